// Every part of a set of library drawings, searchable as the user types: the catalogue texts
// of each record folded into one text per drawing, with what a hit list shows and what finds
// the record again in the category tree.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace vantor {

struct PartSearchEntry {
    std::int64_t recordId = 0;  // the record's handle value, as the tree names it
    std::string recordKey;      // its key in the group
    // The dictionary keys from the library's key down to the group, as CVNTreeBase::findNode
    // takes them.
    std::vector<std::string> keys;
    std::string kname;
    std::string ename;
    std::string spec;
    std::string material;
    // The texts matched beyond those shown: remark, user fields, the record's group text.
    std::vector<std::string> otherTexts;
};

// One drawing's entries with the text the search runs over.
class IndexedDrawing {
public:
    IndexedDrawing(std::string path, std::vector<PartSearchEntry> entries);

    const std::string& path() const { return path_; }
    const std::vector<PartSearchEntry>& entries() const { return entries_; }
    // The entries holding every word, in entry order.
    void find(const std::vector<std::u16string>& words, std::vector<std::uint32_t>& hits) const;

private:
    std::u16string_view textOf(std::uint32_t entry) const;

    std::string path_;
    std::vector<PartSearchEntry> entries_;
    // The folded texts of all entries, each field after a separator so that no word runs from
    // one field into the next; entry i ends at ends_[i].
    std::u16string text_;
    std::vector<std::uint32_t> ends_;
};

// The hits of one search. It keeps the drawings it points into, so it stays whole while the
// index changes under it.
class PartSearchResult {
public:
    std::size_t size() const { return hits_.size(); }
    bool empty() const { return hits_.empty(); }
    const PartSearchEntry& entry(std::size_t i) const;
    const std::string& drawingPath(std::size_t i) const;

private:
    friend class PartSearchIndex;
    struct Hit {
        std::uint32_t drawing;
        std::uint32_t entry;
    };
    std::vector<std::shared_ptr<const IndexedDrawing>> drawings_;
    std::vector<Hit> hits_;
};

class PartSearchIndex {
public:
    // Puts a drawing's entries in place of what the index held of it; a new drawing comes last.
    void setDrawing(std::string path, std::vector<PartSearchEntry> entries);
    void removeDrawing(std::string_view path);
    void clear() { drawings_.clear(); }
    // Drawings in the order given, without the ones not listed.
    void keepOnly(const std::vector<std::string>& paths);

    bool holds(std::string_view path) const;
    std::size_t drawingCount() const { return drawings_.size(); }
    std::size_t partCount() const;

    // The parts whose texts hold every word of the query, in any order and anywhere in a word,
    // Latin letters without regard to case, a lone consonant standing for any syllable that
    // begins with it. In drawing order, then tree order; an empty query finds nothing.
    PartSearchResult find(std::string_view query) const;

private:
    std::vector<std::shared_ptr<const IndexedDrawing>> drawings_;
};

}  // namespace vantor
