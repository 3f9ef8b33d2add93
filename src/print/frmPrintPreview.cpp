#include "print/frmPrintPreview.h"

#include "common/Common.h"
#include "common/ErrorHandler.h"
#include "common/FileDialogs.h"
#include "common/Icons.h"
#include "common/Settings.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPrintDialog>
#include <QPrintPreviewWidget>
#include <QPrinter>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>

namespace {
constexpr int kMinimumTwips = 300;
constexpr int kMaximumTwips = 6000;
constexpr int kStepTwips = 100;

QComboBox* addChoice(QWidget* parent, QFormLayout* form, const char* name, const QString& label,
                     const QStringList& entries) {
    auto* combo = new QComboBox(parent);
    combo->setObjectName(QString::fromLatin1(name));
    combo->addItems(entries);
    form->addRow(label, combo);
    return combo;
}

QToolButton* arrow(QWidget* parent, const QString& name, Qt::ArrowType type) {
    auto* button = new QToolButton(parent);
    button->setObjectName(name);
    button->setArrowType(type);
    button->setAutoRepeat(true);
    return button;
}

// A number box with its up and down buttons.
QLineEdit* addNumber(QWidget* parent, QFormLayout* form, const char* name, const char* updown,
                     const QString& label, int value, QToolButton*& up, QToolButton*& down) {
    auto* box = new QLineEdit(QString::number(value), parent);
    box->setObjectName(QString::fromLatin1(name));
    box->setValidator(new QIntValidator(kMinimumTwips, kMaximumTwips, box));
    up = arrow(parent, QString::fromLatin1(updown) + QStringLiteral("Up"), Qt::UpArrow);
    down = arrow(parent, QString::fromLatin1(updown) + QStringLiteral("Down"), Qt::DownArrow);
    auto* row = new QHBoxLayout;
    row->addWidget(box, 1);
    row->addWidget(up);
    row->addWidget(down);
    form->addRow(label, row);
    return box;
}
} // namespace

frmPrintPreview::frmPrintPreview(qint32 currentTimetable, QWidget* parent)
    : QDialog(parent), m_current(currentTimetable) {
    setObjectName(QStringLiteral("frmPrintPreview"));
    setWindowTitle(QStringLiteral("Print Preview"));
    setWindowIcon(Icons::App());
    resize(980, 700);

    auto* form = new QFormLayout;
    cboLayout = addChoice(this, form, "cboLayout", QStringLiteral("Print Layout:"),
                          {QStringLiteral("Size to fit page"), QStringLiteral("2 Columns"),
                           QStringLiteral("3 Columns"), QStringLiteral("4 Columns")});
    cboOrientation = addChoice(this, form, "cboOrientation", QStringLiteral("Paper Orientation:"),
                               {QStringLiteral("Portrait"), QStringLiteral("Landscape")});
    cboToPrint = addChoice(this, form, "cboToPrint", QStringLiteral("Items to Print:"),
                           {QStringLiteral("Current timetable"), QStringLiteral("All timetables")});
    cboPrintTo =
        addChoice(this, form, "cboPrintTo", QStringLiteral("Print to:"),
                  {QStringLiteral("Printer"), QStringLiteral("HTML"), QStringLiteral("PDF")});
    chkShowGuides = new QCheckBox(QStringLiteral("Show Paper Guides"), this);
    chkShowGuides->setObjectName(QStringLiteral("chkShowGuides"));
    chkShowGuides->setChecked(true);
    form->addRow(QString(), chkShowGuides);
    const Print::PageOptions defaults;
    txtColumnWidth = addNumber(this, form, "txtColumnWidth", "updownColumnWidth",
                               QStringLiteral("Timetable Width:"), defaults.columnWidth,
                               updownColumnWidthUp, updownColumnWidthDown);
    txtRowHeight = addNumber(this, form, "txtRowHeight", "updownRowHeight",
                             QStringLiteral("Timetable Height:"), defaults.rowHeight,
                             updownRowHeightUp, updownRowHeightDown);

    cmdPrint = new QPushButton(QStringLiteral("&Print"), this);
    cmdPrint->setObjectName(QStringLiteral("cmdPrint"));
    cmdPrint->setDefault(true);
    cmdCancel = new QPushButton(QStringLiteral("Close"), this);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cmdPrint);
    buttons->addWidget(cmdCancel);

    auto* side = new QVBoxLayout;
    side->addLayout(form);
    side->addStretch(1);
    side->addLayout(buttons);
    preview = new QPrintPreviewWidget(this);
    preview->setObjectName(QStringLiteral("preview"));
    auto* layout = new QHBoxLayout(this);
    layout->addWidget(preview, 1);
    layout->addLayout(side);

    // The paper's way round and what to print are kept from the last time.
    for (const auto& [box, key] :
         {std::pair{cboOrientation, "Orientation"}, std::pair{cboToPrint, "ItemsToPrint"}}) {
        const int kept =
            Common::GetSetting(QString::fromLatin1(Common::kConfigApp), QStringLiteral("Print"),
                               QString::fromLatin1(key), QStringLiteral("0"))
                .toInt();
        box->setCurrentIndex(std::clamp(kept, 0, box->count() - 1));
        connect(box, &QComboBox::currentIndexChanged, this, [key](int index) {
            Common::SaveSetting(QString::fromLatin1(Common::kConfigApp), QStringLiteral("Print"),
                                QString::fromLatin1(key), QString::number(index));
        });
    }
    connect(preview, &QPrintPreviewWidget::paintRequested, this, &frmPrintPreview::paintPreview);
    connect(cboOrientation, &QComboBox::currentIndexChanged, this,
            &frmPrintPreview::DoPrintPreview);
    connect(cboToPrint, &QComboBox::currentIndexChanged, this, &frmPrintPreview::DoPrintPreview);
    connect(cboLayout, &QComboBox::currentIndexChanged, this, &frmPrintPreview::cboLayout_Click);
    for (QLineEdit* box : {txtColumnWidth, txtRowHeight})
        connect(box, &QLineEdit::textChanged, this, [this, box] {
            if (box->hasAcceptableInput())
                DoPrintPreview();
        });
    connect(updownColumnWidthUp, &QToolButton::clicked, this,
            [this] { step(txtColumnWidth, kStepTwips); });
    connect(updownColumnWidthDown, &QToolButton::clicked, this,
            [this] { step(txtColumnWidth, -kStepTwips); });
    connect(updownRowHeightUp, &QToolButton::clicked, this,
            [this] { step(txtRowHeight, kStepTwips); });
    connect(updownRowHeightDown, &QToolButton::clicked, this,
            [this] { step(txtRowHeight, -kStepTwips); });
    // The guides are the preview's alone: it repaints, the layout stays.
    connect(chkShowGuides, &QCheckBox::toggled, preview, &QPrintPreviewWidget::updatePreview);
    connect(cmdPrint, &QPushButton::clicked, this, &frmPrintPreview::cmdPrint_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    DoPrintPreview();
}

Print::PageOptions frmPrintPreview::options() const {
    Print::PageOptions o;
    o.layout = static_cast<Print::Layout>(cboLayout->currentIndex() + 1);
    o.orientation =
        cboOrientation->currentIndex() == 1 ? QPageLayout::Landscape : QPageLayout::Portrait;
    o.columnWidth = std::clamp(txtColumnWidth->text().toInt(), kMinimumTwips, kMaximumTwips);
    o.rowHeight = std::clamp(txtRowHeight->text().toInt(), kMinimumTwips, kMaximumTwips);
    return o;
}

void frmPrintPreview::step(QLineEdit* box, int by) {
    box->setText(
        QString::number(std::clamp(box->text().toInt() + by, kMinimumTwips, kMaximumTwips)));
}

void frmPrintPreview::cboLayout_Click() {
    // A layout with more columns gives each timetable a narrower share of
    // the page: the width follows the layout and the number of days.
    static constexpr int kWidths[] = {1400, 900, 600, 450};
    const int columns = std::max(1, m_days);
    const int width = kWidths[std::clamp(cboLayout->currentIndex(), 0, 3)] * 5 / columns;
    const QString text = QString::number(std::clamp(width, kMinimumTwips, kMaximumTwips));
    if (txtColumnWidth->text() == text)
        DoPrintPreview();
    else
        txtColumnWidth->setText(text);
}

void frmPrintPreview::DoPrintPreview() {
    Guard("frmPrintPreview", "DoPrintPreview", [&] {
        ++m_layouts;
        m_tables.clear();
        const QVector<qint32> ids = cboToPrint->currentIndex() == 1 ? ModMain::AllTimetableIDs()
                                                                    : QVector<qint32>{m_current};
        for (const qint32 id : ids)
            if (const auto t = ModMain::PrintTimetable(id); t.id != 0)
                m_tables << t;
        if (!m_tables.isEmpty())
            m_days = int(m_tables.first().timeOnTop ? m_tables.first().rowHeadings.size()
                                                    : m_tables.first().columnHeadings.size());
        preview->updatePreview();
    });
}

void frmPrintPreview::paintPreview(QPrinter* printer) {
    Guard("frmPrintPreview", "paintPreview", [&] {
        Print::SetUpPage(*printer, options());
        QPainter painter(printer);
        // The guides outline the margins of every page; they are not printed.
        const QRect margins = printer->pageLayout().paintRectPixels(printer->resolution());
        const auto guides = [&](QPainter& p) {
            p.save();
            p.setPen(QPen(QColor(120, 160, 220), 0, Qt::DotLine));
            p.drawRect(QRect(QPoint(0, 0), margins.size()));
            p.restore();
        };
        Print::PaintTimetables(painter, *printer, m_tables, options(),
                               chkShowGuides->isChecked() ? std::function<void(QPainter&)>(guides)
                                                          : std::function<void(QPainter&)>());
    });
}

void frmPrintPreview::cmdPrint_Click() {
    Guard("frmPrintPreview", "cmdPrint_Click", [&] {
        DoPrintPreview();
        const int target = cboPrintTo->currentIndex();
        if (target == ToPrinter) {
            QPrinter printer(QPrinter::HighResolution);
            Print::SetUpPage(printer, options());
            QPrintDialog dialog(&printer, this);
            if (dialog.exec() != QDialog::Accepted)
                return;
            QPainter painter(&printer);
            Print::PaintTimetables(painter, printer, m_tables, options());
            return;
        }
        const bool html = target == ToHtml;
        QString file = html ? QStringLiteral("timetables.html") : QStringLiteral("timetables.pdf");
        if (!Common::VBGetSaveFileName(file, nullptr, true, false, false, true,
                                       html ? QStringLiteral("Web page (*.html)|*.html")
                                            : QStringLiteral("PDF (*.pdf)|*.pdf"),
                                       nullptr, QString(),
                                       html ? QStringLiteral("Save as HTML")
                                            : QStringLiteral("Export as PDF"),
                                       html ? QStringLiteral("html") : QStringLiteral("pdf"), this))
            return;
        const QString error =
            html ? Print::WriteHtml(file, m_tables) : Print::WritePdf(file, m_tables, options());
        if (!error.isEmpty())
            Common::MsgBox(error, Common::MsgButtons::Ok, Common::MsgIcon::Exclamation);
        else
            Common::MsgBox(QStringLiteral("The timetables were saved as %1.")
                               .arg(QDir::toNativeSeparators(file)),
                           Common::MsgButtons::Ok, Common::MsgIcon::Information);
    });
}
