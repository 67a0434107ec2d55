#include "shell/pages/ChartPage.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QScrollBar>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <map>
#include <utility>

#include "charts/Twips.h"
#include "model/Vdependency.h"
#include "model/Vresource.h"
#include "model/Vtask.h"
#include "paint/Text.h"
#include "shell/desk/CommonDialogs.h"
#include "shell/desk/FormHost.h"
#include "shell/desk/Printing.h"
#include "shell/entry/ResourceEntryForm.h"
#include "shell/entry/SubprojectEntryForm.h"
#include "shell/entry/TaskEntryForm.h"

namespace vortan {
namespace {

// Where the options stand when they must hide a part of the chart, in twips from its corner.
constexpr int kOptionsLeft = 120, kOptionsTop = 2760;

/// A frame that the mouse moves about in front of what it hides.
class OptionsBox : public QGroupBox {
  public:
    using QGroupBox::QGroupBox;

    /// Beside or below a chart of that size if there is room, unless the user has chosen another place.
    void Place(const QSize& chart) {
        const QSize room = parentWidget()->size() - size();
        const int gap = fontMetrics().height() / 2;
        if (dragged_) {
            PutAt(pos());
        } else if (chart.width() + gap <= room.width()) {
            PutAt({chart.width() + gap, gap});
        } else if (chart.height() + gap <= room.height()) {
            PutAt({gap, chart.height() + gap});
        } else {
            PutAt((QPointF(kOptionsLeft, kOptionsTop) * logicalDpiX() / kTwipsPerInch).toPoint());
        }
        raise();
    }
    /// As far as the parent reaches.
    void PutAt(QPoint corner) {
        const QSize room = parentWidget()->size() - size();
        move(std::clamp(corner.x(), 0, std::max(0, room.width())),
             std::clamp(corner.y(), 0, std::max(0, room.height())));
    }

  protected:
    void mousePressEvent(QMouseEvent* event) override { grip_ = event->position().toPoint(); }
    void mouseMoveEvent(QMouseEvent* event) override {
        if (!event->buttons().testFlag(Qt::LeftButton)) return;
        dragged_ = true;
        PutAt(mapToParent(event->position().toPoint() - grip_));
    }

  private:
    QPoint grip_;
    bool dragged_ = false;
};

}  // namespace

ChartForm* ChartPage::InFront(Desktop& desktop, const char* name) {
    ChildForm* open = desktop.host->FullPage();
    return open && open->FormName() == name ? static_cast<ChartPage*>(open)->chart_.get() : nullptr;
}

void ChartPage::Start(Desktop& desktop, const char* name, const Maker& make) {
    if (InFront(desktop, name)) {
        ChildForm* open = desktop.host->FullPage();
        static_cast<ChartPage*>(open)->Restart();
        if (desktop.host->FullPage() == open) desktop.host->ShowForm(*open);
        return;
    }
    auto* page = new ChartPage(desktop, make);
    page->Show([page] {
        page->Restart();
        return page->chart_->TheVwindow().IsLaidOut() && !page->chart_->IsEmpty();
    });
}

ChartPage::ChartPage(Desktop& desktop, const Maker& make) : PageForm(desktop) {
    metrics_ = std::make_unique<QtTextMetrics>(QFont());
    chart_ = make(*metrics_);
    setObjectName(Q(chart_->Name()));
    view_ = std::make_unique<SurfaceView>(chart_->TheVwindow(), *metrics_);
    ConnectView();
    auto* layout = new QGridLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    if (chart_->StaysAsBuilt()) {
        behindLine_ = new BehindLine("chart", [this] { BuildAnew(); });
        layout->addWidget(behindLine_, 0, 0, 1, 2);
    }
    layout->addWidget(view_.get(), 1, 1);
    setFocusProxy(view_.get());
    const auto frame = chart_->Frame();
    if (frame.options.empty()) return;
    options_ = NewOptionsFrame(frame);
    optionsBeside_ = frame.beside;
    if (optionsBeside_) layout->addWidget(options_, 1, 0, Qt::AlignTop);
}

/// Made anew where it says something else.
void ChartPage::RefreshSideList() {
    auto list = chart_->Beside();
    std::vector<std::vector<std::string>> texts;
    if (list)
        for (const auto& row : list->rows) texts.push_back(row.texts);
    if (texts == sideTexts_) return;
    sideTexts_ = std::move(texts);
    delete sideList_;
    sideList_ = list ? NewSideList(*list) : nullptr;
    if (sideList_) static_cast<QGridLayout*>(layout())->addWidget(sideList_, 1, 2);
}

/// Enter and a double click open the task of a row.
QWidget* ChartPage::NewSideList(const ChartForm::SideList& list) {
    auto* table = new QTreeWidget;
    table->setObjectName(Q(list.name));
    table->setAccessibleName(Q(list.caption));
    table->setRootIsDecorated(false);
    table->setUniformRowHeights(true);
    table->setAllColumnsShowFocus(true);
    QStringList titles;
    for (const std::string& title : list.titles) titles += Q(title);
    table->setHeaderLabels(titles);
    std::vector<std::pair<Link<Vtask>, Link<Vresource>>> subjects;
    for (const ChartForm::SideList::Row& row : list.rows) {
        QStringList texts;
        for (const std::string& text : row.texts) texts += Q(text);
        auto* item = new QTreeWidgetItem(table, texts);
        for (int column = 1; column < titles.size(); ++column)
            item->setTextAlignment(column, Qt::AlignRight | Qt::AlignVCenter);
        subjects.emplace_back(row.subject.task, row.subject.resource);
    }
    for (int column = 0; column < titles.size(); ++column) table->resizeColumnToContents(column);
    const int length = table->header()->length();
    table->header()->setStretchLastSection(false);
    table->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    table->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    const int width = length + table->verticalScrollBar()->sizeHint().width() + 4;
    table->setFixedWidth(std::min(width, screen()->availableGeometry().width() * 2 / 5));
    connect(table, &QTreeWidget::itemActivated, this,
            [this, table, subjects = std::move(subjects)](QTreeWidgetItem* item) {
                const auto& row = subjects[static_cast<std::size_t>(table->indexOfTopLevelItem(item))];
                desktop_.Run("ChartPage:SideList_DblClick", [&row, this] {
                    Open({row.first.Get(), row.second.Get()});
                });
            });
    return table;
}

void ChartPage::ConnectView() {
    view_->installEventFilter(this);
    view_->PlaceCount = [this] {
        const SpokenParts& spoken = Spoken();
        return static_cast<int>(spoken.places.size()) + (spoken.table ? spoken.table->Rows() : 0);
    };
    view_->PlaceAt = [this](int part) { return SpokenPlace(part); };
    view_->TipAt = [this](int x, int y) {
        std::string tip;
        desktop_.Run("Chart:TipAt", [&] { tip = chart_->TipAt(x, y); });
        return tip;
    };
    view_->PressAt = [this](int x, int y, bool shift) {
        using Drag = ChartForm::Drag;
        auto drag = Drag::None;
        desktop_.Run("Chart:Vwindow_MouseDown", [&] {
            chart_->TheVwindow().Press(x, y);
            drag = chart_->BeginDrag(x, y, shift);
            if (chart_->SelectAt(drag == Drag::None ? x : -1, y)) view_->viewport()->update();
        });
        return drag == Drag::None   ? std::nullopt
               : drag == Drag::Link ? std::optional(Qt::CrossCursor)
               : drag == Drag::Date ? std::optional(Qt::SizeHorCursor)
                                    : std::optional(Qt::SizeVerCursor);
    };
    view_->DragTo = [this](int x, int y) {
        auto state = ChartForm::DragState::None;
        desktop_.Run("Chart:Vwindow_MouseMove", [&] { state = chart_->DragTo(x, y); });
        if (state != ChartForm::DragState::Still) ShowSurface();
        return state != ChartForm::DragState::None;
    };
    view_->EndDrag = [this] {
        desktop_.Run("Chart:Vwindow_MouseUp", [this] {
            if (const auto wish = chart_->EndDrag()) Grant(*wish);
        });
    };
    view_->CancelDrag = [this] { desktop_.Run("Chart:Form_KeyDown", [this] { chart_->CancelDrag(); }); };
    view_->DragTip = [this] { return chart_->DragTip(); };
    view_->Marks = [this] {
        std::vector<QLine> lines;
        for (const auto& mark : chart_->Marks()) lines.emplace_back(mark.x1, mark.y1, mark.x2, mark.y2);
        return lines;
    };
    if (chart_->TheVwindow().TheStyle() == Vwindow::Style::Time) {
        view_->Zoom = [this](const QPoint& pixel, int steps) {
            desktop_.Run("Chart:Zoom", [&] { ZoomAt(pixel, steps); });
        };
    }
    view_->DoubleClickAt = [this](int x, int y) {
        desktop_.Run("Chart:Vwindow_DblClick", [&] { Open(chart_->SubjectAt(x, y)); });
    };
    view_->Cursor = [this] { return Cursor(); };
}

QGroupBox* ChartPage::NewOptionsFrame(const ChartForm::OptionsFrame& frame) {
    QGroupBox* box =
        frame.beside ? new QGroupBox(Q(frame.caption), this) : new OptionsBox(Q(frame.caption), view_.get());
    box->setObjectName(Q(frame.name));
    box->setAutoFillBackground(true);
    auto* column = new QVBoxLayout(box);
    for (const ChartForm::Option& option : frame.options) {
        optionControls_.push_back(NewOption(option));
        column->addWidget(optionControls_.back());
    }
    const int line = fontMetrics().height();
    box->setMinimumWidth(fontMetrics().horizontalAdvance(box->title()) + 2 * line);
    box->adjustSize();
    return box;
}

QWidget* ChartPage::NewOption(const ChartForm::Option& option) {
    QWidget* control = option.kind == ChartForm::Option::Kind::List ? NewList(option) : NewButton(option);
    control->setObjectName(Q(option.name));
    return control;
}

QWidget* ChartPage::NewButton(const ChartForm::Option& option) {
    using Kind = ChartForm::Option::Kind;
    QAbstractButton* control = nullptr;
    if (option.kind == Kind::Button) control = new QPushButton(Q(option.caption));
    if (option.kind == Kind::Check) control = new QCheckBox(Q(option.caption));
    if (option.kind == Kind::Choice) control = new QRadioButton(Q(option.caption));
    control->setChecked(option.on);
    const auto clicked = [this, option](bool on) {
        desktop_.Run("ChartPage:Option_Click", [&] {
            option.click(on);
            if (option.kind != Kind::Button) Restart();
        });
    };
    if (option.kind == Kind::Button) {
        connect(control, &QAbstractButton::clicked, this, clicked);
    } else {
        // Of two choices that change, the one that is on now speaks.
        connect(control, &QAbstractButton::toggled, this, [clicked, option](bool on) {
            if (on || option.kind == Kind::Check) clicked(on);
        });
    }
    return control;
}

QWidget* ChartPage::NewList(const ChartForm::Option& option) {
    auto* list = new QComboBox;
    for (const std::string& item : option.items) list->addItem(Q(item));
    list->setCurrentIndex(option.chosen);
    list->setAccessibleName(Q(option.caption));
    list->setToolTip(Q(option.caption));
    connect(list, &QComboBox::currentIndexChanged, this, [this, option](int item) {
        desktop_.Run("ChartPage:Option_Click", [&] {
            option.choose(item);
            Restart();
        });
    });
    return list;
}

void ChartPage::RefreshOptions() {
    const auto frame = chart_->Frame();
    for (std::size_t i = 0; i < optionControls_.size(); ++i) {
        const QSignalBlocker quiet(optionControls_[i]);
        if (auto* button = qobject_cast<QAbstractButton*>(optionControls_[i])) {
            if (button->isCheckable()) button->setChecked(frame.options[i].on);
        } else {
            static_cast<QComboBox*>(optionControls_[i])->setCurrentIndex(frame.options[i].chosen);
        }
    }
}

void ChartPage::Restart() {
    auto metrics = std::make_unique<QtTextMetrics>(FontOfForm(desktop_, objectName()));
    chart_->TheVwindow().SetFont(*metrics);
    chart_->TheVwindow().SetPage(desktop_.host->ThePrinting().Page());
    view_->SetMetrics(*metrics);
    metrics_ = std::move(metrics);
    if (behindLine_) behindLine_->hide();
    desktop_.Run("Chart:Start", [this] { chart_->Start(); });
    setWindowTitle(Q(chart_->Caption()));
    RefreshOptions();
    RefreshSideList();
    ShowSurface();
    PlaceOptions();
    if (chart_->IsEmpty() && desktop_.host->FullPage() == this) Unload();
}

void ChartPage::PlaceOptions() {
    if (options_ && !optionsBeside_) static_cast<OptionsBox*>(options_)->Place(view_->ContentSize());
}

void ChartPage::Do(const char* section, ChartForm::Answer answer) {
    if (answer == ChartForm::Answer::Start) Hear(section, [this] { Restart(); });
    if (answer == ChartForm::Answer::Unload) Hear(section, [this] { Unload(); });
}

void ChartPage::NewSolution() {
    const auto answer = chart_->AnswersTo().newSolution;
    Do("ChartPage:NewSolution", answer);
    if (answer == ChartForm::Answer::Nothing) FallBehind();
}

void ChartPage::ObjectsChanged(const std::vector<Change>&) {
    FallBehind();
}

void ChartPage::FallBehind() {
    if (behindLine_)
        behindLine_->Show(chart_->HasMovedBoxes() ? " Boxes that you have moved will go back." : "");
}

void ChartPage::BuildAnew() {
    desktop_.Run("ChartPage:BuildAnewCommand_Click", [this] {
        if (desktop_.workspace.ThisProjectSolved()) Restart();
    });
}

void ChartPage::Open(const ChartForm::Subject& subject) {
    if (subject.resource) {
        ResourceEntryForm::StartModify(desktop_, *subject.resource);
    } else if (subject.task && subject.task->Subproject()) {
        SubprojectEntryForm::StartModify(desktop_, *subject.task);
    } else if (subject.task) {
        TaskEntryForm::StartModify(desktop_, *subject.task);
    }
}

void ChartPage::Grant(const ChartForm::Wish& wish) {
    if (wish.dependency) {
        wish.dependency->SetDepDate(wish.date);
        return desktop_.ObjectSaved(wish.dependency, Desktop::Saving::Changed);
    }
    if (!wish.required) return desktop_.SelectObject(wish.task);
    const auto refuse = [this](const char* text, const char* title) {
        desktop_.platform.MessageBox(text, title, BoxIcon::Warning, BoxButtons::Ok);
    };
    if (wish.task == wish.required) return refuse("A task cannot depend on itself.", "Invalid Task");
    if (wish.task->Subproject()) return refuse("Please click on a task first.", "No Task Selected");
    auto* dependency = desktop_.workspace.NewVObject<Vdependency>();
    dependency->SetTask(wish.task);
    dependency->SetTaskRequired(wish.required);
    dependency->SetFromPercent(static_cast<std::uint8_t>(wish.fromPercent));
    dependency->SetToPercent(static_cast<std::uint8_t>(wish.toPercent));
    desktop_.ObjectSaved(dependency, Desktop::Saving::Added);
}

/// To finer or coarser periods; what is under the pointer stays there.
void ChartPage::ZoomAt(const QPoint& pixel, int steps) {
    using Period = Vwindow::Period;
    Vwindow& surface = chart_->TheVwindow();
    if (!surface.IsLaidOut()) return;
    const int now = static_cast<int>(surface.ThePeriod());
    const int next =
        std::clamp(now - steps, static_cast<int>(Period::Day), static_cast<int>(Period::Quarter));
    if (next == now) return;
    const DateTime date = surface.XToDate(view_->ToSurface(pixel).x());
    surface.FixedPeriod = static_cast<Period>(next);
    Restart();
    view_->ScrollXTo(surface.DateToX(date), pixel.x());
}

std::optional<QRect> ChartPage::Cursor() const {
    const auto box = chart_->Cursor();
    if (!box) return std::nullopt;
    return QRect(QPoint(box->x1, box->y1), QPoint(box->x2, box->y2));
}

/// Whether the key meant a walk through the boxes of the chart.
bool ChartPage::Walk(int key, bool moves) {
    using Key = ChartForm::Key;
    static const std::map<std::pair<int, bool>, Key> kKeys = {
        {{Qt::Key_Left, false}, Key::Left}, {{Qt::Key_Right, false}, Key::Right},
        {{Qt::Key_Up, false}, Key::Up},     {{Qt::Key_Down, false}, Key::Down},
        {{Qt::Key_Up, true}, Key::MoveUp},  {{Qt::Key_Down, true}, Key::MoveDown}};
    const auto found = kKeys.find({key, moves});
    if (found == kKeys.end()) return false;
    bool walked = false;
    view_->Mark(std::nullopt);
    desktop_.Run("Chart:Vwindow_KeyDown", [&] { walked = chart_->Press(found->second); });
    if (!walked) return Cursor().has_value();
    ShowSurface();
    if (const auto cursor = Cursor()) view_->ScrollTo(*cursor);
    return true;
}

/// Of the view: keys that it would scroll by, and its size.
bool ChartPage::eventFilter(QObject* watched, QEvent* event) {
    if (watched != view_.get()) return false;
    if (event->type() == QEvent::Resize) PlaceOptions();
    if (event->type() != QEvent::KeyPress) return false;
    const auto& key = static_cast<const QKeyEvent&>(*event);
    return Walk(key.key(), key.modifiers().testFlag(Qt::ControlModifier));
}

void ChartPage::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Escape:
            if (view_->Dragging()) return view_->GiveUpDrag();
            desktop_.Run("ChartPage:Form_KeyDown", [this] { Unload(); });
            return;
        case Qt::Key_Delete:
            desktop_.Run("ChartPage:Form_KeyDown", [this] {
                if (Vdependency* link = chart_->SelectedLink()) desktop_.RequestDelete(link);
            });
            return;
        case Qt::Key_F5:
            if (chart_->StaysAsBuilt()) BuildAnew();
            return;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            desktop_.Run("ChartPage:Form_KeyDown", [this] {
                const auto& found = view_->Marked();
                Open(found ? chart_->SubjectAt(found->center().x(), found->center().y())
                           : chart_->SubjectAtCursor());
            });
            return;
        default:
            QWidget::keyPressEvent(event);
    }
}

std::optional<ShownSurface> ChartPage::Surface() {
    return ShownSurface{chart_->TheVwindow(), *metrics_, chart_->Caption()};
}

bool ChartPage::ChangeFont() {
    if (ShowFont(desktop_, objectName())) Restart();
    return true;
}

}  // namespace vortan
