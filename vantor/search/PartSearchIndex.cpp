#include "vantor/search/PartSearchIndex.h"

#include <algorithm>

#include "vantor/search/SearchText.h"

namespace vantor {

namespace {

constexpr char16_t kFieldSeparator = u'\u001F';

void appendField(std::string_view text, std::u16string& out) {
    out += kFieldSeparator;
    appendSearchFold(text, out);
}

}  // namespace

IndexedDrawing::IndexedDrawing(std::string path, std::vector<PartSearchEntry> entries)
    : path_(std::move(path)), entries_(std::move(entries)) {
    ends_.reserve(entries_.size());
    for (const PartSearchEntry& entry : entries_) {
        for (const std::string& key : entry.keys) appendField(key, text_);
        for (const std::string* text : {&entry.kname, &entry.ename, &entry.spec, &entry.material})
            appendField(*text, text_);
        for (const std::string& text : entry.otherTexts) appendField(text, text_);
        ends_.push_back(static_cast<std::uint32_t>(text_.size()));
    }
}

std::u16string_view IndexedDrawing::textOf(std::uint32_t entry) const {
    const std::uint32_t begin = entry == 0 ? 0 : ends_[entry - 1];
    return std::u16string_view(text_).substr(begin, ends_[entry] - begin);
}

void IndexedDrawing::find(const std::vector<std::u16string>& words,
                          std::vector<std::uint32_t>& hits) const {
    if (words.empty()) return;
    const std::u16string_view all(text_);
    const std::size_t first = hits.size();
    // The first word over the whole text: after a hit the rest of its entry is skipped.
    for (std::size_t at = findSearchWord(all, words.front()); at != std::u16string_view::npos;) {
        const auto entry = static_cast<std::uint32_t>(
            std::upper_bound(ends_.begin(), ends_.end(), at) - ends_.begin());
        hits.push_back(entry);
        at = findSearchWord(all, words.front(), ends_[entry]);
    }
    // The other words only within the entries that hold the first.
    const auto holdsRest = [&](std::uint32_t entry) {
        const std::u16string_view text = textOf(entry);
        return std::all_of(words.begin() + 1, words.end(), [&](const auto& word) {
            return findSearchWord(text, word) != std::u16string_view::npos;
        });
    };
    hits.erase(std::stable_partition(hits.begin() + static_cast<std::ptrdiff_t>(first),
                                     hits.end(), holdsRest),
               hits.end());
}

const PartSearchEntry& PartSearchResult::entry(std::size_t i) const {
    return drawings_[hits_[i].drawing]->entries()[hits_[i].entry];
}

const std::string& PartSearchResult::drawingPath(std::size_t i) const {
    return drawings_[hits_[i].drawing]->path();
}

void PartSearchIndex::setDrawing(std::string path, std::vector<PartSearchEntry> entries) {
    auto drawing = std::make_shared<const IndexedDrawing>(std::move(path), std::move(entries));
    const auto same = std::find_if(drawings_.begin(), drawings_.end(), [&](const auto& shown) {
        return shown->path() == drawing->path();
    });
    if (same != drawings_.end())
        *same = std::move(drawing);
    else
        drawings_.push_back(std::move(drawing));
}

void PartSearchIndex::removeDrawing(std::string_view path) {
    std::erase_if(drawings_, [&](const auto& drawing) { return drawing->path() == path; });
}

void PartSearchIndex::keepOnly(const std::vector<std::string>& paths) {
    std::vector<std::shared_ptr<const IndexedDrawing>> kept;
    for (const std::string& path : paths) {
        const auto held = std::find_if(drawings_.begin(), drawings_.end(),
                                       [&](const auto& drawing) { return drawing->path() == path; });
        if (held != drawings_.end() && std::find(kept.begin(), kept.end(), *held) == kept.end())
            kept.push_back(*held);
    }
    drawings_ = std::move(kept);
}

bool PartSearchIndex::holds(std::string_view path) const {
    return std::any_of(drawings_.begin(), drawings_.end(),
                       [&](const auto& drawing) { return drawing->path() == path; });
}

std::size_t PartSearchIndex::partCount() const {
    std::size_t count = 0;
    for (const auto& drawing : drawings_) count += drawing->entries().size();
    return count;
}

PartSearchResult PartSearchIndex::find(std::string_view query) const {
    PartSearchResult result;
    const std::vector<std::u16string> words = searchWords(query);
    if (words.empty()) return result;
    std::vector<std::uint32_t> hits;
    for (const auto& drawing : drawings_) {
        hits.clear();
        drawing->find(words, hits);
        if (hits.empty()) continue;
        const auto index = static_cast<std::uint32_t>(result.drawings_.size());
        result.drawings_.push_back(drawing);
        for (std::uint32_t entry : hits) result.hits_.push_back({index, entry});
    }
    return result;
}

}  // namespace vantor
