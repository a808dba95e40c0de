// The part record's fields in one table: where each is stored in the record's chain, its title
// in the label array, its BOM-mark tag, its CSV column and its list in the insertion dialog.
#pragma once

#include <cstddef>
#include <span>
#include <string_view>

namespace vantor {

class PartFields {
public:
    // The fields in display order, which is the order of the label array: a titled field's id
    // is the index of its title there (ModuleSettings::labels, the title dialog's edits, the
    // settings keys). The group has a fixed title and comes last. The six views stand together
    // in slot order, so a view's id less FrontView is its slot in the record's view arrays.
    enum Id : std::size_t {
        KName,
        EName,
        Spec,
        Material,
        Weight,
        Price,
        Remark,
        User1,
        User2,
        User3,
        User4,
        User5,
        User6,
        FrontView,
        SideView,
        PlanView,
        Drawing1,
        Drawing2,
        Drawing3,
        Group,
    };
    static constexpr std::size_t kCount = Group + 1;
    static constexpr std::size_t kLabelCount = Group;
    static constexpr std::size_t kViewCount = Drawing3 - FrontView + 1;
    static constexpr std::size_t kTextCount = kCount - kViewCount;
    // A view is stored as its block name and, at the next position, its BOM-mark point.
    static constexpr std::size_t kChainLength = 2 * kViewCount + kTextCount;
    static constexpr int kViewPointCode = 10;
    static constexpr std::size_t kCascadeCount = 12;
    static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

    // The page of the data entry dialog that shows the field.
    enum class Kind { General, User, View };

    struct Field {
        Id id;
        Kind kind;
        std::string_view name;          // in the command line's output: "kname", "front"
        std::size_t position;           // in the stored chain of 26 values
        int code;                       // the group code of the value at `position`
        std::string_view labelKey;      // the title's settings key; empty for the group
        std::string_view defaultLabel;  // blanks inside pad short titles, they belong to it
        std::string_view bomTag;        // the BOM mark's attribute tag; empty when it has none
        std::size_t bomRow;             // the tag's row among the mark's attribute definitions
        std::size_t csvColumn;          // in a CSV record line, after the drawing location
        std::size_t cascadeList;        // the insertion dialog's list, or kNone
    };

    // All fields, indexed by id.
    static std::span<const Field, kCount> all();
    static const Field& field(Id id) { return all()[id]; }

    // The ids in the order of the stored chain: the six views, then the group and the 13 texts.
    static std::span<const Id, kCount> inStoredOrder();
    // The ids in the order of a CSV record line's columns after the drawing location.
    static std::span<const Id, kCount> inCsvOrder();

    // The field the insertion dialog's list `list` shows. The name list shows the English
    // name instead of the Korean one while the dialog is asked to.
    static Id cascadeField(std::size_t list, bool englishName);
    // The field whose BOM tag is `tag`, compared byte for byte; nullptr when none has it.
    static const Field* byBomTag(std::string_view tag);
};

}  // namespace vantor
