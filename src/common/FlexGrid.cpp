#include "common/FlexGrid.h"

#include <QAbstractButton>
#include <QHeaderView>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleOptionHeader>
#include <QTimer>
#include <algorithm>
#include <climits>

namespace {
constexpr int kDataRole = Qt::UserRole + 1;
constexpr int kTwipsPerInch = 1440;
// No row or column is taller or wider than this (20 inches), whatever a file says.
constexpr int kMaxSizeTwips = 20 * kTwipsPerInch;
} // namespace

FlexGrid::FlexGrid(QWidget* parent) : QTableWidget(parent) {
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setSelectionMode(QAbstractItemView::ContiguousSelection);
    setSelectionBehavior(QAbstractItemView::SelectItems);
    setWordWrap(true);
    setTextElideMode(Qt::ElideRight);
    horizontalHeader()->setSectionResizeMode(QHeaderView::Interactive);
    verticalHeader()->setSectionResizeMode(QHeaderView::Interactive);
    horizontalHeader()->setHighlightSections(false);
    verticalHeader()->setHighlightSections(false);
    horizontalHeader()->setMinimumSectionSize(0);
    verticalHeader()->setMinimumSectionSize(0);
    horizontalHeader()->setDefaultAlignment(Qt::AlignCenter);
    verticalHeader()->setDefaultAlignment(Qt::AlignCenter);
    m_rowData.resize(1);
    m_colData.resize(1);
    m_rowTwips.resize(1);
    m_colTwips.resize(1);
    m_colAlign.resize(1);
    // The corner cell is Qt's corner button; paint the heading text on it.
    m_corner = findChild<QAbstractButton*>();
    if (m_corner)
        m_corner->installEventFilter(this);
}

void FlexGrid::ensureDataSize() {
    m_rowData.resize(rows());
    m_rowTwips.resize(rows());
    m_colData.resize(cols());
    m_colTwips.resize(cols());
    m_colAlign.resize(cols());
    m_rowExtra.resize(rows());
    m_colExtra.resize(cols());
    shareSpareRoomLater();
}

void FlexGrid::setRows(int n) {
    setRowCount(std::max(n, 1) - 1);
    ensureDataSize();
}

void FlexGrid::setCols(int n) {
    setColumnCount(std::max(n, 1) - 1);
    ensureDataSize();
}

void FlexGrid::clearGrid() {
    clearContents();
    setRowCount(0);
    m_rowData.fill(0);
    m_colData.fill(0);
    m_rowExtra.fill(0);
    ensureDataSize();
}

int FlexGrid::row() const {
    return currentRow() + 1;
}

int FlexGrid::col() const {
    return currentColumn() + 1;
}

void FlexGrid::setRowCol(int r, int c) {
    if (r < 1 || c < 1 || r >= rows() || c >= cols())
        return;
    setCurrentCell(r - 1, c - 1, QItemSelectionModel::ClearAndSelect);
}

int FlexGrid::rowSel() const {
    const int cr = currentRow(), cc = currentColumn();
    for (const QTableWidgetSelectionRange& range : selectedRanges()) {
        if (cr >= range.topRow() && cr <= range.bottomRow() && cc >= range.leftColumn() &&
            cc <= range.rightColumn())
            return (cr == range.topRow() ? range.bottomRow() : range.topRow()) + 1;
    }
    return row();
}

int FlexGrid::colSel() const {
    const int cr = currentRow(), cc = currentColumn();
    for (const QTableWidgetSelectionRange& range : selectedRanges()) {
        if (cr >= range.topRow() && cr <= range.bottomRow() && cc >= range.leftColumn() &&
            cc <= range.rightColumn())
            return (cc == range.leftColumn() ? range.rightColumn() : range.leftColumn()) + 1;
    }
    return col();
}

void FlexGrid::selectRange(int r1, int c1, int r2, int c2) {
    if (std::min(r1, r2) < 1 || std::min(c1, c2) < 1 || std::max(r1, r2) >= rows() ||
        std::max(c1, c2) >= cols())
        return;
    setCurrentCell(r1 - 1, c1 - 1, QItemSelectionModel::NoUpdate);
    clearSelection();
    setRangeSelected(QTableWidgetSelectionRange(std::min(r1, r2) - 1, std::min(c1, c2) - 1,
                                                std::max(r1, r2) - 1, std::max(c1, c2) - 1),
                     true);
}

QTableWidgetItem* FlexGrid::item(int r, int c) const {
    if (r < 0 || c < 0 || r >= rows() || c >= cols() || (r == 0 && c == 0))
        return nullptr;
    if (r == 0)
        return horizontalHeaderItem(c - 1);
    if (c == 0)
        return verticalHeaderItem(r - 1);
    return QTableWidget::item(r - 1, c - 1);
}

QTableWidgetItem* FlexGrid::ensureItem(int r, int c) {
    if (QTableWidgetItem* it = item(r, c))
        return it;
    if (r < 0 || c < 0 || r >= rows() || c >= cols() || (r == 0 && c == 0))
        return nullptr;
    auto* it = new QTableWidgetItem;
    it->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
    if (r == 0) {
        setHorizontalHeaderItem(c - 1, it);
    } else if (c == 0) {
        setVerticalHeaderItem(r - 1, it);
    } else {
        if (m_colAlign.value(c))
            it->setTextAlignment(m_colAlign.value(c));
        setItem(r - 1, c - 1, it);
    }
    return it;
}

QString FlexGrid::textMatrix(int r, int c) const {
    if (r == 0 && c == 0)
        return m_cornerText;
    const QTableWidgetItem* it = item(r, c);
    if (!it)
        return QString();
    const QVariant raw = it->data(Qt::UserRole);
    return raw.isValid() ? raw.toString() : it->text();
}

void FlexGrid::setTextMatrix(int r, int c, const QString& text) {
    if (r == 0 && c == 0) {
        m_cornerText = text;
        setCornerButtonEnabled(false);
        if (m_corner)
            m_corner->update();
        return;
    }
    if (QTableWidgetItem* it = ensureItem(r, c)) {
        // Cells keep the program's "\r\n" line breaks; Qt draws "\n" only.
        QString shown = text;
        shown.replace(QLatin1String("\r\n"), QLatin1String("\n"));
        it->setData(Qt::DisplayRole, shown);
        it->setData(Qt::UserRole, text);
    }
}

qint32 FlexGrid::rowData(int r) const {
    return m_rowData.value(r);
}

void FlexGrid::setRowData(int r, qint32 v) {
    if (r >= 0 && r < m_rowData.size())
        m_rowData[r] = v;
}

qint32 FlexGrid::colData(int c) const {
    return m_colData.value(c);
}

void FlexGrid::setColData(int c, qint32 v) {
    if (c >= 0 && c < m_colData.size())
        m_colData[c] = v;
}

qint32 FlexGrid::cellData(int r, int c) const {
    const QTableWidgetItem* it = item(r, c);
    return it ? it->data(kDataRole).toInt() : 0;
}

void FlexGrid::setCellData(int r, int c, qint32 v) {
    if (QTableWidgetItem* it = ensureItem(r, c))
        it->setData(kDataRole, v);
}

int FlexGrid::cellCheck(int r, int c) const {
    const QTableWidgetItem* it = item(r, c);
    if (!it)
        return NoCheck;
    const QVariant v = it->data(Qt::CheckStateRole);
    if (!v.isValid())
        return NoCheck;
    return v.toInt() == Qt::Checked ? Checked : Unchecked;
}

void FlexGrid::setCellCheck(int r, int c, int v) {
    QTableWidgetItem* it = ensureItem(r, c);
    if (!it)
        return;
    if (v == Checked)
        it->setData(Qt::CheckStateRole, Qt::Checked);
    else if (v == Unchecked)
        it->setData(Qt::CheckStateRole, Qt::Unchecked);
    else
        it->setData(Qt::CheckStateRole, QVariant());
}

QColor FlexGrid::cellBackColor(int r, int c) const {
    const QTableWidgetItem* it = item(r, c);
    const QVariant v = it ? it->data(Qt::BackgroundRole) : QVariant();
    if (v.isValid())
        return v.value<QBrush>().color();
    return (r == 0 || c == 0) ? palette().color(QPalette::Button) : palette().color(QPalette::Base);
}

void FlexGrid::setCellBackColor(int r, int c, const QColor& color) {
    if (QTableWidgetItem* it = ensureItem(r, c))
        it->setBackground(QBrush(color));
}

void FlexGrid::setCellForeColor(int r, int c, const QColor& color) {
    if (QTableWidgetItem* it = ensureItem(r, c)) {
        if (color.isValid())
            it->setForeground(QBrush(color));
        else
            it->setData(Qt::ForegroundRole, QVariant());
    }
}

namespace {
constexpr int kEdgeRole = Qt::UserRole + 7;
}

QColor FlexGrid::cellEdge(int r, int c) const {
    const QTableWidgetItem* it = item(r, c);
    return it ? it->data(kEdgeRole).value<QColor>() : QColor();
}

void FlexGrid::setCellEdge(int r, int c, const QColor& color) {
    if (r < 1 || c < 1)
        return;
    if (QTableWidgetItem* it = color.isValid() ? ensureItem(r, c) : item(r, c))
        it->setData(kEdgeRole, color.isValid() ? QVariant(color) : QVariant());
}

void FlexGrid::setCellToolTip(int r, int c, const QString& text) {
    if (QTableWidgetItem* it = text.isEmpty() ? item(r, c) : ensureItem(r, c))
        it->setToolTip(text);
}

void FlexGrid::setColAlignment(int c, Qt::Alignment a) {
    if (c < 0 || c >= cols())
        return;
    m_colAlign[c] = a;
    for (int r = 1; r < rows(); ++r)
        if (QTableWidgetItem* it = item(r, c))
            it->setTextAlignment(a);
}

int FlexGrid::dpi() const {
    const int d = logicalDpiY();
    return d > 0 ? d : 96;
}

int FlexGrid::twipsToPixels(int twips) const {
    // In 64 bits: a size from a damaged file must not overflow on the way.
    const qint64 px = (qint64(twips) * dpi() + kTwipsPerInch / 2) / kTwipsPerInch;
    return static_cast<int>(std::clamp<qint64>(px, INT_MIN / 2, INT_MAX / 2));
}

int FlexGrid::pixelsToTwips(int pixels) const {
    const qint64 twips = (qint64(pixels) * kTwipsPerInch + dpi() / 2) / dpi();
    return static_cast<int>(std::clamp<qint64>(twips, INT_MIN / 2, INT_MAX / 2));
}

void FlexGrid::markSizesSaved() {
    m_savedRowTwips.resize(rows());
    m_savedColTwips.resize(cols());
    for (int r = 0; r < rows(); ++r)
        m_savedRowTwips[r] = rowHeightTwips(r);
    for (int c = 0; c < cols(); ++c)
        m_savedColTwips[c] = colWidthTwips(c);
}

bool FlexGrid::rowHeightChanged(int r) const {
    return r >= 0 && r < rows() &&
           (r >= m_savedRowTwips.size() || m_savedRowTwips[r] != rowHeightTwips(r));
}

bool FlexGrid::colWidthChanged(int c) const {
    return c >= 0 && c < cols() &&
           (c >= m_savedColTwips.size() || m_savedColTwips[c] != colWidthTwips(c));
}

int FlexGrid::rowHeightTwips(int r) const {
    if (r < 0 || r >= rows())
        return 0;
    const int px = r == 0 ? horizontalHeader()->height() : rowHeight(r - 1) - m_rowExtra.value(r);
    const int stored = m_rowTwips.value(r);
    return (stored > 0 && twipsToPixels(stored) == px) ? stored : pixelsToTwips(px);
}

void FlexGrid::setRowHeightTwips(int r, int twips) {
    if (r < 0 || r >= rows())
        return;
    twips = std::clamp(twips, 0, kMaxSizeTwips);
    m_rowTwips[r] = twips;
    if (r == 0)
        horizontalHeader()->setFixedHeight(twipsToPixels(twips));
    else
        setRowHeight(r - 1, twipsToPixels(twips) + m_rowExtra.value(r));
    shareSpareRoomLater();
}

int FlexGrid::colWidthTwips(int c) const {
    if (c < 0 || c >= cols())
        return 0;
    const int px = c == 0 ? verticalHeader()->width() : columnWidth(c - 1) - m_colExtra.value(c);
    const int stored = m_colTwips.value(c);
    return (stored > 0 && twipsToPixels(stored) == px) ? stored : pixelsToTwips(px);
}

void FlexGrid::setColWidthTwips(int c, int twips) {
    if (c < 0 || c >= cols())
        return;
    twips = std::clamp(twips, 0, kMaxSizeTwips);
    m_colTwips[c] = twips;
    if (c == 0)
        verticalHeader()->setFixedWidth(twipsToPixels(twips));
    else
        setColumnWidth(c - 1, twipsToPixels(twips) + m_colExtra.value(c));
    shareSpareRoomLater();
}

void FlexGrid::setShareSpareRoom(bool on) {
    if (on && !m_shareSpare) {
        // The viewport changes size with the window and with its scroll bars;
        // a divider dragged in a heading is shared out when it is let go.
        viewport()->installEventFilter(this);
        horizontalHeader()->viewport()->installEventFilter(this);
        verticalHeader()->viewport()->installEventFilter(this);
    }
    m_shareSpare = on;
    shareSpareRoom();
}

void FlexGrid::shareSpareRoomLater() {
    if (!m_shareSpare || m_sharePending)
        return;
    m_sharePending = true;
    QTimer::singleShot(0, this, &FlexGrid::shareSpareRoom);
}

void FlexGrid::shareSpareRoom() {
    m_sharePending = false;
    // Each body section's own size first (what the user dragged included),
    // then what the viewport leaves over, shared out a pixel at a time.
    const auto share = [this](int count, int room, QVector<int>& twips, QVector<int>& extra,
                              auto ownTwips, auto resize) {
        QVector<int> own(count, 0);
        int total = 0;
        for (int i = 1; i < count; ++i) {
            twips[i] = std::max(0, ownTwips(i)); // a divider dragged past the spread
            own[i] = twipsToPixels(twips[i]);
            total += own[i];
        }
        const int spare = m_shareSpare && count > 1 ? std::max(0, room - total) : 0;
        for (int i = 1; i < count; ++i) {
            extra[i] = spare / (count - 1) + (i - 1 < spare % (count - 1) ? 1 : 0);
            resize(i - 1, own[i] + extra[i]);
        }
    };
    share(
        cols(), viewport()->width(), m_colTwips, m_colExtra,
        [this](int c) { return colWidthTwips(c); },
        [this](int i, int px) { setColumnWidth(i, px); });
    share(
        rows(), viewport()->height(), m_rowTwips, m_rowExtra,
        [this](int r) { return rowHeightTwips(r); },
        [this](int i, int px) { setRowHeight(i, px); });
}

int FlexGrid::findRow(int c, const QString& text) const {
    for (int r = 1; r < rows(); ++r)
        if (textMatrix(r, c) == text)
            return r;
    return -1;
}

void FlexGrid::mousePressEvent(QMouseEvent* event) {
    QTableWidget::mousePressEvent(event);
    const QModelIndex idx = indexAt(event->position().toPoint());
    if (idx.isValid())
        Q_EMIT gridMouseDown(idx.row() + 1, idx.column() + 1, event->button());
}

void FlexGrid::setEmptyText(const QString& text) {
    m_emptyText = text;
    viewport()->update();
}

void FlexGrid::paintEvent(QPaintEvent* event) {
    QTableWidget::paintEvent(event);
    {
        // Frames over the cells that have one, inside the cell so a neighbour
        // does not paint over them.
        QPainter p(viewport());
        const int top = std::max(0, rowAt(0)), left = std::max(0, columnAt(0));
        int bottom = rowAt(viewport()->height() - 1), right = columnAt(viewport()->width() - 1);
        if (bottom < 0)
            bottom = rowCount() - 1;
        if (right < 0)
            right = columnCount() - 1;
        for (int r = top; r <= bottom; ++r)
            for (int c = left; c <= right; ++c) {
                const QTableWidgetItem* it = QTableWidget::item(r, c);
                const QColor edge = it ? it->data(kEdgeRole).value<QColor>() : QColor();
                if (!edge.isValid())
                    continue;
                p.setPen(QPen(edge, 3));
                p.setBrush(Qt::NoBrush);
                p.drawRect(visualRect(model()->index(r, c)).adjusted(2, 2, -2, -2));
            }
    }
    if (m_emptyText.isEmpty() || (rowCount() > 0 && columnCount() > 0))
        return;
    QPainter p(viewport());
    p.setPen(palette().color(QPalette::PlaceholderText));
    QFont f = font();
    f.setPointSizeF(f.pointSizeF() * 1.15);
    p.setFont(f);
    p.drawText(viewport()->rect().adjusted(24, 24, -24, -24), Qt::AlignCenter | Qt::TextWordWrap,
               m_emptyText);
}

bool FlexGrid::eventFilter(QObject* watched, QEvent* event) {
    if (m_shareSpare &&
        ((watched == viewport() && event->type() == QEvent::Resize) ||
         (event->type() == QEvent::MouseButtonRelease &&
          (watched == horizontalHeader()->viewport() || watched == verticalHeader()->viewport()))))
        shareSpareRoomLater();
    if (watched == m_corner && event->type() == QEvent::Paint) {
        QPainter p(m_corner);
        QStyleOptionHeader opt;
        opt.initFrom(m_corner);
        opt.rect = m_corner->rect();
        opt.position = QStyleOptionHeader::OnlyOneSection;
        opt.orientation = Qt::Horizontal;
        opt.text = m_cornerText;
        opt.textAlignment = Qt::AlignCenter;
        // The corner button is disabled so it cannot select the grid; draw it as a heading.
        opt.state |= QStyle::State_Enabled | QStyle::State_Raised | QStyle::State_Horizontal;
        opt.palette.setCurrentColorGroup(QPalette::Active);
        style()->drawControl(QStyle::CE_Header, &opt, &p, m_corner);
        return true;
    }
    return QTableWidget::eventFilter(watched, event);
}
