// Tool-button icons.
#include "vantor/ui/window/CommandIcons.h"

#include <QStyle>

namespace vantor {

QIcon commandIcon(int id, const QStyle& style) {
    QStyle::StandardPixmap pixmap = QStyle::SP_FileIcon;
    switch (id) {
        case 1200: pixmap = QStyle::SP_DirHomeIcon; break;
        case 1201: pixmap = QStyle::SP_DriveHDIcon; break;
        case 1202: pixmap = QStyle::SP_FileDialogContentsView; break;
        case 1203: pixmap = QStyle::SP_FileDialogDetailedView; break;
        case 1204: pixmap = QStyle::SP_FileDialogNewFolder; break;
        case 1205: pixmap = QStyle::SP_FileDialogInfoView; break;
        case 1206: pixmap = QStyle::SP_FileDialogStart; break;
        case 1207: pixmap = QStyle::SP_DialogApplyButton; break;
        case 1209: pixmap = QStyle::SP_DirOpenIcon; break;
        case 1210: pixmap = QStyle::SP_DialogSaveButton; break;
        case 1211: pixmap = QStyle::SP_FileDialogListView; break;
        case 1212: pixmap = QStyle::SP_TitleBarShadeButton; break;
        case 1213: pixmap = QStyle::SP_DialogCloseButton; break;
        case 1214: pixmap = QStyle::SP_DialogHelpButton; break;
        case 1302: pixmap = QStyle::SP_FileDialogNewFolder; break;
        case 1303: pixmap = QStyle::SP_DialogResetButton; break;
        case 1304: pixmap = QStyle::SP_TrashIcon; break;
        case 1305: pixmap = QStyle::SP_BrowserReload; break;
        default: break;
    }
    return style.standardIcon(pixmap);
}

QIcon frameIcon(const QStyle& style) {
    return style.standardIcon(QStyle::SP_FileDialogDetailedView);
}

}  // namespace vantor
