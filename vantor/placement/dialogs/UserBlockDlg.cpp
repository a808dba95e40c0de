// The insertion dialog.
#include "vantor/placement/dialogs/UserBlockDlg.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <cstdlib>

#include "cad/app/UserDialogs.h"
#include "cad/db/Database.h"
#include "vantor/placement/InsertionState.h"
#include "vantor/host/VantorApp.h"
#include "vantor/placement/DrawingOptions.h"
#include "vantor/placement/Insertion.h"
#include "vantor/placement/InsertionInput.h"
#include "vantor/placement/dialogs/CheckedEdit.h"
#include "vantor/placement/dialogs/DataViewDlg.h"
#include "vantor/placement/dialogs/DialogInput.h"
#include "vantor/placement/dialogs/DrawOptionDlg.h"
#include "vantor/placement/dialogs/PartPicture.h"
#include "vantor/placement/dialogs/PlacementDialogContext.h"
#include "vantor/store/LibraryDrawing.h"
#include "vantor/ui/ModuleSettings.h"

namespace vantor {

namespace {

constexpr int kFirstListId = 491;
constexpr int kViewListId = 402;
constexpr int kEnglishId = 404;
constexpr int kDataId = 407;
constexpr int kUserGroupId = 459;
constexpr int kFixedAngleId = 428;
constexpr int kPickAngleId = 430;
constexpr int kAngleId = 432;
constexpr int kOptionsId = 9;
constexpr int kCancelDrawingId = cad::app::IDCANCEL;

constexpr const char* kPreviewUnreadable =
    "파일이름을 가져올 수 없습니다.\n- CPreviewSubDlg::InitBlock(AcDbDatabase * pDb, char * "
    "blockName) error";

QString idName(int id) {
    return QStringLiteral("id%1").arg(id);
}

QPushButton* button(const char* text, int id, QWidget* parent) {
    auto* made = new QPushButton(QString::fromUtf8(text), parent);
    made->setObjectName(idName(id));
    made->setAccessibleName(made->text());
    made->setAutoDefault(false);
    return made;
}

QString qText(const std::string& text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace

CUserBlockDlg::CUserBlockDlg(UserBlockInput input, PlacementDialogContext& context,
                             QWidget* parent)
    : QDialog(parent),
      input_(std::move(input)),
      context_(context),
      cascade_(input_.records, input_.lastChosen),
      views_(new QTreeWidget(this)),
      picture_(new PartPicture([this](const std::string&) { return input_.library; }, this)),
      angle_(new CheckedEdit(this)) {
    setWindowTitle(QString::fromStdString(std::string(VantorApp::kProductTitle) + " Library"));
    const ModuleSettings& settings = context_.settings;

    // Drawing state: the picture of the chosen view block over the record's view blocks.
    auto* state = new QGroupBox(QString::fromUtf8("작도 상태"), this);
    state->setAccessibleName(state->title());
    views_->setObjectName(idName(kViewListId));
    views_->setAccessibleName(QString::fromUtf8("사양 목록"));
    views_->setColumnCount(2);
    views_->setHeaderLabels({QString::fromUtf8("도  면"), QString::fromUtf8("블 록")});
    views_->setRootIsDecorated(false);
    views_->setSelectionMode(QAbstractItemView::SingleSelection);
    views_->header()->setStretchLastSection(true);
    // Six views at most: the list needs no more room than that, the picture takes the rest.
    views_->setFixedHeight(views_->header()->sizeHint().height() +
                           6 * views_->fontMetrics().height() + 12);
    picture_->setObjectName(QStringLiteral("id487"));
    picture_->setMinimumSize(280, 240);
    auto* stateColumn = new QVBoxLayout(state);
    stateColumn->addWidget(picture_, 1);
    stateColumn->addWidget(views_);

    // The twelve lists: six general fields, six user fields, in id order.
    auto makeList = [this](std::size_t k, QWidget* box, QFormLayout* form) {
        auto* list = new QComboBox(box);
        list->setObjectName(idName(kFirstListId + static_cast<int>(k)));
        list->setMinimumWidth(220);
        list->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        list->setMinimumContentsLength(16);
        auto* label = new QLabel(box);
        label->setBuddy(list);
        form->addRow(label, list);
        lists_[k] = list;
        captions_[k] = label;
        connect(list, &QComboBox::activated, this,
                [this, k](int item) { listChosen(k, item); });
    };
    auto* general = new QGroupBox(QString::fromUtf8("사양 선택"), this);
    general->setAccessibleName(general->title());
    auto* generalForm = new QFormLayout(general);
    generalForm->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    for (std::size_t k = 0; k < 6; ++k) makeList(k, general, generalForm);
    QPushButton* dataButton = button("데이터 보기", kDataId, general);
    english_ = new QCheckBox(QString::fromUtf8("품명 영문 보기"), general);
    english_->setObjectName(idName(kEnglishId));
    english_->setAccessibleName(english_->text());
    auto* generalButtons = new QHBoxLayout;
    generalButtons->addWidget(english_);
    generalButtons->addStretch();
    generalButtons->addWidget(dataButton);
    generalForm->addRow(generalButtons);

    auto* user = new QGroupBox(QString::fromUtf8("추가 사양 선택"), this);
    user->setObjectName(idName(kUserGroupId));
    user->setAccessibleName(user->title());
    auto* userForm = new QFormLayout(user);
    userForm->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    for (std::size_t k = 6; k < ChoiceCascade::kListCount; ++k) makeList(k, user, userForm);

    // Drawing options: the angle kept or dragged, the angle itself, and the options dialog.
    auto* options = new QGroupBox(QString::fromUtf8("작도옵션"), this);
    options->setAccessibleName(options->title());
    fixedAngle_ = new QCheckBox(QString::fromUtf8("각도 고정"), options);
    fixedAngle_->setObjectName(idName(kFixedAngleId));
    fixedAngle_->setAccessibleName(fixedAngle_->text());
    QPushButton* pick = button("각 도 <", kPickAngleId, options);
    angle_->setParent(options);
    angle_->setObjectName(idName(kAngleId));
    angle_->setAccessibleName(QString::fromUtf8("각도"));
    angle_->setFixedWidth(angle_->fontMetrics().horizontalAdvance(QStringLiteral("-360.000")) + 16);
    QPushButton* more = button("옵션설정", kOptionsId, options);
    auto* optionRow = new QHBoxLayout(options);
    optionRow->addWidget(fixedAngle_);
    optionRow->addWidget(pick);
    optionRow->addWidget(angle_);
    optionRow->addStretch();
    optionRow->addWidget(more);

    QPushButton* ok = button("확  인", cad::app::IDOK, this);
    QPushButton* cancel = button("취   소", kCancelId, this);
    QPushButton* cancelDrawing = button("작도취소", kCancelDrawingId, this);
    ok->setDefault(true);
    // The two ways out take no focus: leaving a wrong angle to cancel must not complain first.
    cancel->setFocusPolicy(Qt::NoFocus);
    cancelDrawing->setFocusPolicy(Qt::NoFocus);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(ok);
    buttons->addWidget(cancel);
    buttons->addWidget(cancelDrawing);

    auto* right = new QVBoxLayout;
    right->addWidget(general);
    right->addWidget(user);
    right->addWidget(options);
    auto* columns = new QHBoxLayout;
    columns->addWidget(state, 1);
    columns->addLayout(right);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(columns);
    layout->addLayout(buttons);

    connect(english_, &QCheckBox::toggled, this, &CUserBlockDlg::englishNamesToggled);
    connect(dataButton, &QPushButton::clicked, this, &CUserBlockDlg::showData);
    connect(pick, &QPushButton::clicked, this,
            [this] { pickAngleInDrawing(this, angle_, context_); });
    connect(angle_, &CheckedEdit::left, this, [this] { angleAccepted(*angle_, context_.dialogs); });
    connect(more, &QPushButton::clicked, this, &CUserBlockDlg::editOptions);
    connect(ok, &QPushButton::clicked, this, &CUserBlockDlg::accept);
    connect(cancel, &QPushButton::clicked, this, &CUserBlockDlg::closeOnly);
    connect(cancelDrawing, &QPushButton::clicked, this, &CUserBlockDlg::reject);
    connect(views_, &QTreeWidget::currentItemChanged, this, &CUserBlockDlg::viewChosen);

    // The English names are the information text's names too: one choice for both.
    {
        QSignalBlocker quiet(english_);
        english_->setChecked((settings.option & DrawingOptions::kEnglishName) != 0);
    }
    fixedAngle_->setChecked((settings.option & DrawingOptions::kFixedAngle) != 0);
    angle_->setText(qText(settings.drawAngle));
    if (english_->isChecked()) cascade_.setEnglishNames(true);
    fillLists(0);
}

CUserBlockDlg::Ending CUserBlockDlg::run(QWidget* parent, UserBlockInput input,
                                         PlacementDialogContext& context,
                                         UserBlockChoice& choice) {
    CUserBlockDlg dialog(std::move(input), context, parent);
    runHideable(dialog);
    if (dialog.ending() == Ending::Ok) choice = dialog.choice();
    return dialog.ending();
}

void CUserBlockDlg::fillLists(std::size_t first) {
    const FieldLabels::Texts& labels = context_.settings.labels;
    for (std::size_t k = first; k < ChoiceCascade::kListCount; ++k) {
        const PartFields::Id field = PartFields::cascadeField(k, cascade_.englishNames());
        captions_[k]->setText(qText(labels[field]) + QStringLiteral(" :"));
        lists_[k]->setAccessibleName(captions_[k]->text());
        QSignalBlocker quiet(lists_[k]);
        lists_[k]->clear();
        for (const std::string& value : cascade_.items(k)) {
            const QString text = qText(value);
            lists_[k]->addItem(text, text);
        }
        lists_[k]->setCurrentIndex(cascade_.selection(k));
    }
    showViews();
}

void CUserBlockDlg::listChosen(std::size_t list, int item) {
    cascade_.select(list, item);
    fillLists(list + 1);
}

void CUserBlockDlg::englishNamesToggled(bool english) {
    cascade_.setEnglishNames(english);
    fillLists(0);
}

// One row per view slot that holds a block; the row keeps the slot and the BOM mark's offset.
// The row chosen stays chosen across a refill: the same block, else the same view of the new
// record (a plan view chosen for one size is the plan view of the next), else the first.
void CUserBlockDlg::showViews() {
    std::string previousBlock = input_.lastBlock;
    std::optional<std::size_t> previousSlot;
    if (views_->currentItem() != nullptr) {
        previousBlock = views_->currentItem()->text(1).toStdString();
        previousSlot = currentView();
    }
    QSignalBlocker quiet(views_);
    views_->clear();
    const PartRecord* record = cascade_.chosen();
    QTreeWidgetItem* first = nullptr;
    QTreeWidgetItem* sameBlock = nullptr;
    QTreeWidgetItem* sameSlot = nullptr;
    if (record != nullptr) {
        for (std::size_t slot = 0; slot < PartRecord::kViewCount; ++slot) {
            const std::string& block = record->viewBlocks[slot];
            if (block.empty()) continue;
            const auto id = static_cast<PartFields::Id>(PartFields::FrontView + slot);
            auto* row = new QTreeWidgetItem(
                views_, {qText(context_.settings.labels[id]), qText(block)});
            row->setData(0, Qt::UserRole, static_cast<int>(slot));
            row->setData(0, Qt::UserRole + 1, record->viewPoints[slot].x);
            row->setData(0, Qt::UserRole + 2, record->viewPoints[slot].y);
            if (first == nullptr) first = row;
            if (sameBlock == nullptr && block == previousBlock) sameBlock = row;
            if (previousSlot == slot) sameSlot = row;
        }
    }
    views_->setCurrentItem(sameBlock ? sameBlock : sameSlot ? sameSlot : first);
    views_->resizeColumnToContents(0);
    viewChosen();
}

std::optional<std::size_t> CUserBlockDlg::currentView() const {
    const QTreeWidgetItem* row = views_->currentItem();
    if (row == nullptr) return std::nullopt;
    return static_cast<std::size_t>(row->data(0, Qt::UserRole).toInt());
}

void CUserBlockDlg::viewChosen() {
    const PartRecord* record = cascade_.chosen();
    const std::optional<std::size_t> slot = currentView();
    if (record == nullptr || !slot) {
        picture_->clear();
        return;
    }
    if (input_.library == nullptr && !toldUnreadable_) {
        toldUnreadable_ = true;
        context_.dialogs.messageBox(kPreviewUnreadable, kFileNameErrorTitle,
                                    cad::app::MB_ICONERROR);
    }
    const QTreeWidgetItem* row = views_->currentItem();
    const cad::ge::Point3d mark(row->data(0, Qt::UserRole + 1).toDouble(),
                                row->data(0, Qt::UserRole + 2).toDouble(), 0.0);
    picture_->showBlock(input_.libraryPath, record->viewBlocks[*slot], mark);
}

void CUserBlockDlg::showData() {
    const PartRecord* record = cascade_.chosen();
    if (record == nullptr) return;
    CDataViewDlg::run(this, *record, context_.settings.labels);
}

void CUserBlockDlg::editOptions() {
    ModuleSettings& settings = context_.settings;
    // The dialog shows what this one holds now, and what it answers is kept at once: it is
    // the settings' own dialog.
    int option = settings.option & ~DrawingOptions::kFixedAngle;
    if (fixedAngle_->isChecked()) option |= DrawingOptions::kFixedAngle;
    const std::optional<DrawOptionValues> values =
        CDrawOptionDlg::run(this, {option, angle_->text().toStdString()}, context_);
    if (!values) return;
    settings.option = values->option;
    settings.drawAngle = values->angle;
    fixedAngle_->setChecked((values->option & DrawingOptions::kFixedAngle) != 0);
    angle_->setText(qText(values->angle));
}

void CUserBlockDlg::accept() {
    const PartRecord* record = cascade_.chosen();
    InsertionInput::Choice choice;
    choice.libraryPath = input_.libraryPath;
    if (record != nullptr) choice.record = *record;
    choice.view = currentView().value_or(PartRecord::kViewCount);
    choice.scale = input_.scale;
    choice.angle = angle_->text().toStdString();

    InsertionState state;
    bool accepted = false;
    if (input_.library != nullptr) {
        accepted = InsertionInput::accept(choice, *input_.library, context_.settings, state,
                                          context_.dialogs);
    } else if (InsertionInput::validate(choice.scale, std::atof(choice.angle.c_str()),
                                        context_.dialogs) == InsertionInput::Field::None) {
        // No drawing read, so no block in it.
        context_.dialogs.messageBox(Insertion::kMissingBlock, Insertion::kMissingBlockTitle,
                                    cad::app::MB_ICONERROR);
    }
    if (!accepted) {
        // The range message names the angle: it is the one edit here to correct.
        const double angle = std::atof(choice.angle.c_str());
        if (!(angle >= -360.0 && angle <= 360.0)) angle_->selectForCorrection();
        return;
    }
    int& option = context_.settings.option;
    option &= ~(DrawingOptions::kFixedAngle | DrawingOptions::kEnglishName);
    if (fixedAngle_->isChecked()) option |= DrawingOptions::kFixedAngle;
    if (english_->isChecked()) option |= DrawingOptions::kEnglishName;

    choice_.record = state.record;
    choice_.blockName = state.blockName;
    choice_.view = choice.view;
    choice_.angle = choice.angle;
    choice_.scale = state.scale;
    ending_ = Ending::Ok;
    QDialog::accept();
}

void CUserBlockDlg::reject() {
    ending_ = Ending::CancelDrawing;
    QDialog::reject();
}

void CUserBlockDlg::closeOnly() {
    ending_ = Ending::Cancel;
    QDialog::reject();
}

}  // namespace vantor
