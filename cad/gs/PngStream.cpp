// Writing PNG by bands with zlib.
#include "cad/gs/PngStream.h"

#include <QIODevice>
#include <QImage>
#include <vector>
#include <zlib.h>

namespace cad::gs {

namespace {

// Compressed data goes out in chunks of about this size.
constexpr std::size_t kChunk = 256 * 1024;

std::string bigEndian(std::uint32_t value) {
    return {char(value >> 24), char(value >> 16), char(value >> 8), char(value)};
}

}  // namespace

struct PngStream::Deflater {
    z_stream stream{};
    bool started = false;
};

PngStream::PngStream(QIODevice& out, int width, int height)
    : out_(out), width_(width), height_(height), deflater_(std::make_unique<Deflater>()) {
    ok_ = deflateInit(&deflater_->stream, Z_DEFAULT_COMPRESSION) == Z_OK;
    deflater_->started = ok_;
    static const char kSignature[] = "\x89PNG\r\n\x1a\n";
    ok_ = ok_ && out_.write(kSignature, 8) == 8;
    // Width, height, 8 bits, colour type 2 (RGB), deflate, adaptive filters, no interlace.
    ok_ = ok_ && chunk("IHDR", bigEndian(std::uint32_t(width)) + bigEndian(std::uint32_t(height)) +
                                   std::string("\x08\x02\x00\x00\x00", 5));
}

PngStream::~PngStream() {
    if (deflater_->started) deflateEnd(&deflater_->stream);
}

bool PngStream::chunk(const char type[4], const std::string& data) {
    std::uint32_t crc = crc32(0, reinterpret_cast<const Bytef*>(type), 4);
    crc = crc32(crc, reinterpret_cast<const Bytef*>(data.data()), static_cast<uInt>(data.size()));
    const std::string bytes = bigEndian(std::uint32_t(data.size())) + std::string(type, 4) + data + bigEndian(crc);
    return out_.write(bytes.data(), qint64(bytes.size())) == qint64(bytes.size());
}

bool PngStream::deflate(const std::uint8_t* bytes, std::size_t size, bool last) {
    z_stream& z = deflater_->stream;
    z.next_in = const_cast<Bytef*>(bytes);
    z.avail_in = static_cast<uInt>(size);
    std::vector<char> buffer(64 * 1024);
    int status = Z_OK;
    do {
        z.next_out = reinterpret_cast<Bytef*>(buffer.data());
        z.avail_out = static_cast<uInt>(buffer.size());
        status = ::deflate(&z, last ? Z_FINISH : Z_NO_FLUSH);
        if (status == Z_STREAM_ERROR) return false;
        pending_.append(buffer.data(), buffer.size() - z.avail_out);
        if (pending_.size() >= kChunk) {
            if (!chunk("IDAT", pending_)) return false;
            pending_.clear();
        }
    } while (z.avail_out == 0 || (last && status != Z_STREAM_END));
    return true;
}

bool PngStream::write(const QImage& band) {
    if (!ok_ || band.width() != width_ || rowsWritten_ + band.height() > height_) return ok_ = false;
    const QImage rgb = band.format() == QImage::Format_RGB32 ? band : band.convertToFormat(QImage::Format_RGB32);
    std::vector<std::uint8_t> row(1 + 3 * std::size_t(width_));
    for (int y = 0; y < rgb.height() && ok_; ++y) {
        const QRgb* pixels = reinterpret_cast<const QRgb*>(rgb.constScanLine(y));
        // Filter 1 (Sub): each byte less the same byte of the pixel on its left. Drawings are
        // long runs of one colour, which this turns into zeros.
        row[0] = 1;
        std::uint8_t left[3] = {0, 0, 0};
        for (int x = 0; x < width_; ++x) {
            const std::uint8_t rgbBytes[3] = {std::uint8_t(qRed(pixels[x])), std::uint8_t(qGreen(pixels[x])),
                                              std::uint8_t(qBlue(pixels[x]))};
            for (int c = 0; c < 3; ++c) {
                row[1 + 3 * std::size_t(x) + std::size_t(c)] = std::uint8_t(rgbBytes[c] - left[c]);
                left[c] = rgbBytes[c];
            }
        }
        ok_ = deflate(row.data(), row.size(), false);
    }
    rowsWritten_ += rgb.height();
    return ok_;
}

bool PngStream::finish() {
    if (!ok_ || rowsWritten_ != height_) return false;
    ok_ = deflate(nullptr, 0, true) && chunk("IDAT", pending_) && chunk("IEND", {});
    pending_.clear();
    return ok_;
}

}  // namespace cad::gs
