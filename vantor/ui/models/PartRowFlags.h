// The flags of a row that stands for a part: it can be dragged onto the drawing to place it
// there, and it holds nothing below it.
#pragma once

#include <QAbstractItemModel>

namespace vantor {

inline Qt::ItemFlags partRowFlags(const QModelIndex& index, Qt::ItemFlags flags) {
    return index.isValid() ? flags | Qt::ItemIsDragEnabled | Qt::ItemNeverHasChildren : flags;
}

}  // namespace vantor
