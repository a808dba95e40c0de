// Keeps a list's column widths in the settings: applied whenever the columns are made, stored
// whenever the user drags one.
#pragma once

#include <QObject>

#include "vantor/ui/ColumnWidths.h"

class QHeaderView;

namespace vantor {

class ModuleSettings;

class ColumnWidthKeeper : public QObject {
    Q_OBJECT
public:
    ColumnWidthKeeper(QHeaderView& header, ModuleSettings& settings, ListOwner owner);

    // Sets the stored widths on the header's columns.
    void apply();

private:
    void store();

    QHeaderView& header_;
    ModuleSettings& settings_;
    ListOwner owner_;
    bool applying_ = false;
};

}  // namespace vantor
