#include "development/StateGallery.h"

#include "development/GalleryReader.h"
#include "lanes/ProgressNote.h"
#include "list/BrenListCtrl.h"
#include "list/RecordTable.h"
#include "list/RecordView.h"
#include "look/IconRegistry.h"
#include "look/Look.h"
#include "page/ActionButton.h"
#include "page/BrenDialog.h"
#include "page/Console.h"
#include "page/NoticeLine.h"
#include "page/WorkBar.h"

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace {

/// The parts of the console with a reader of the gallery's.
Console WithReader(const Console& console, Reader& reader) {
    return {console.service, console.counters,    console.prompts, reader,
            console.frame,   console.settingNews, console.links};
}

class SampleDialog : public CBrenDialog {
public:
    SampleDialog(const ServiceClient& service, Reader& reader, const QString& title)
        : CBrenDialog(service, reader, title, nullptr) {
        setWindowFlags(Qt::Widget);
        auto* name = new QLineEdit;
        AddRow(u"&Computer"_s, name);
        ReadWhenShown([](const ServiceClient&, std::stop_token) { return std::optional(u"desk-07"_s); },
                      [name](const QString& text) { name->setText(text); });
    }

    void reject() override {} // it stays a part of the page

protected:
    Write Changes() const override {
        return {[](const ServiceClient&, const std::stop_token&) {
                    return u"\"Computer\" was not saved: the service does not answer. OK tries again."_s;
                },
                {}};
    }
};

void PressWhenReady(SampleDialog& dialog) {
    auto* timer = new QTimer(&dialog);
    timer->start(50);
    QObject::connect(timer, &QTimer::timeout, &dialog, [&dialog, timer] {
        auto* ok = dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok);
        if (!dialog.isVisible() || !ok->isEnabled())
            return;
        timer->stop();
        ok->click();
    });
}

struct SampleRow {
    QString time;

    friend bool operator==(const SampleRow&, const SampleRow&) = default;
};

/// Of which no row ever comes.
ListTable SampleTable(const QString& name) {
    return RecordTable<SampleRow>{
        .page = {.name = name, .widths = u"Gallery"_s + name, .empty = u"No Record Found."_s},
        .columns = {{u"Time"_s, 80, &SampleRow::time}},
        .id = {&SampleRow::time},
        .read = [](RecordStream<SampleRow>&, const std::stop_token&) {
            return ReadResult{ReadOutcome::Busy, u"v10_history.db"_s};
        }};
}

QWidget* MakeButtons() {
    auto* buttons = new QWidget;
    auto* rows = new QVBoxLayout(buttons);
    rows->setContentsMargins(0, 0, 0, 0);
    for (const bool busy : {false, true}) {
        auto* row = new QHBoxLayout;
        rows->addLayout(row);
        for (const auto kind :
             {ActionButton::Kind::Framed, ActionButton::Kind::Link, ActionButton::Kind::Icon}) {
            auto* button = new ActionButton(kind);
            button->Set(busy ? u"Starting"_s : u"Start Now"_s, IconRegistry::Icon(StartNowIcon));
            button->SetBusy(busy);
            row->addWidget(button);
        }
    }
    return buttons;
}

/// Owns what its views are given.
class StateBoard : public QWidget {
public:
    explicit StateBoard(const Console& console)
        : m_hanging(WithReader(console, HangingReader())),
          m_answering(WithReader(console, AnsweringReader())) {
        auto* grid = new QGridLayout(this);
        grid->setContentsMargins(Look::PageMargin, Look::PageMargin, Look::PageMargin, Look::PageMargin);
        grid->setSpacing(Look::TextInset);
        grid->addWidget(MakeButtons(), 0, 0, 1, 2);
        auto* bar = new WorkBar;
        bar->setAccessibleName(u"Work whose end is not known"_s);
        bar->SetProgress({});
        grid->addWidget(bar, 1, 0, 1, 2);
        auto* notice = new NoticeLine;
        grid->addWidget(notice, 2, 0, 1, 2);
        notice->SetText(u"The database is locked by another program: v10_history.db (Shown as it was at "
                        "17:40:12.) The line tells of it as long as it lasts, also in two lines."_s);
        const std::pair<const Console&, QString> sides[] = {{m_hanging, u"Busy"_s},
                                                            {m_answering, u"Failed"_s}};
        for (int column = 0; column < 2; ++column) {
            const auto& [parts, title] = sides[column];
            auto* list = new RecordView(parts, SampleTable(title));
            list->List().setMinimumHeight(120);
            m_lists.push_back(list);
            grid->addWidget(list, 3, column);
            auto* dialog = new SampleDialog(parts.service, parts.reader, title);
            grid->addWidget(dialog, 4 + column, 0, 1, 2);
            grid->setColumnStretch(column, 1);
            if (&parts == &m_answering)
                PressWhenReady(*dialog);
        }
        grid->setRowStretch(3, 1);
    }

protected:
    /// A list reads only while it is seen.
    void showEvent(QShowEvent* event) override {
        QWidget::showEvent(event);
        for (RecordView* list : m_lists)
            list->Read();
    }

private:
    Console m_hanging;
    Console m_answering;
    std::vector<RecordView*> m_lists;
};

} // namespace

QWidget* MakeStateGallery(const Console& console) {
    return new StateBoard(console);
}
