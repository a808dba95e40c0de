// The drawing-kind dialog: which of the six drawing slots a block belongs to.
#pragma once

#include <QDialog>
#include <array>
#include <cstddef>
#include <optional>

#include "vantor/store/PartRecord.h"

class QRadioButton;

namespace vantor {

class CDrawKindDlg : public QDialog {
    Q_OBJECT
public:
    static constexpr std::size_t kSlotCount = PartRecord::kViewCount;

    explicit CDrawKindDlg(std::size_t slot = 0, QWidget* parent = nullptr);

    // The slot chosen (0 front view ... 5 drawing 3); nullopt when cancelled.
    static std::optional<std::size_t> choose(QWidget* parent, std::size_t slot = 0);

    std::size_t slot() const;
    QRadioButton* slotButton(std::size_t slot) const { return buttons_.at(slot); }

private:
    std::array<QRadioButton*, kSlotCount> buttons_{};
};

}  // namespace vantor
