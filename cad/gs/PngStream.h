// A PNG file written a band of rows at a time, so a large picture is never held whole: 8-bit
// RGB, rows filtered by their left neighbour and deflated as they come.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

class QIODevice;
class QImage;

namespace cad::gs {

class PngStream {
public:
    PngStream(QIODevice& out, int width, int height);
    ~PngStream();
    PngStream(const PngStream&) = delete;
    PngStream& operator=(const PngStream&) = delete;

    // The next rows of the picture, top to bottom: every row of `band` (its width the
    // picture's). Answers false when the device refused the bytes.
    bool write(const QImage& band);
    // Ends the file; false when rows are missing or the device refused the bytes.
    bool finish();

private:
    struct Deflater;
    bool chunk(const char type[4], const std::string& data);
    bool deflate(const std::uint8_t* bytes, std::size_t size, bool last);

    QIODevice& out_;
    int width_, height_;
    int rowsWritten_ = 0;
    bool ok_ = true;
    std::unique_ptr<Deflater> deflater_;
    std::string pending_;  // compressed bytes not yet written as a chunk
};

}  // namespace cad::gs
