// The data dialog's third page: the six drawing slots, each a block of the library drawing
// with its buttons to capture a block ("..."), pick its BOM mark point ("BOM<") and clear it
// ("X"). The page only asks; the dialog does the work and fills the page again.
#pragma once

#include <QWidget>
#include <array>

#include "vantor/store/PartRecord.h"
#include "vantor/ui/FieldLabels.h"

class QLineEdit;
class QPushButton;

namespace vantor {

class CDataDrawSubDlg : public QWidget {
    Q_OBJECT
public:
    static constexpr std::size_t kSlotCount = PartRecord::kViewCount;

    CDataDrawSubDlg(const FieldLabels::Texts& labels, QWidget* parent = nullptr);

    void fill(const PartRecord& record);

    QLineEdit* nameField(std::size_t slot) const { return names_.at(slot); }

signals:
    void captureRequested(std::size_t slot);
    void bomPointRequested(std::size_t slot);
    void clearRequested(std::size_t slot);

private:
    std::array<QLineEdit*, kSlotCount> names_{};
};

}  // namespace vantor
