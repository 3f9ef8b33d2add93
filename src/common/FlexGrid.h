#pragma once
// The grid used for timetables, resource lists and reports. Its indices count
// the fixed heading row 0 and heading column 0, so body cells start at 1. The
// headings are the table's own header views, which is why they never scroll away.

#include <QColor>
#include <QTableWidget>
#include <QVector>

class FlexGrid : public QTableWidget {
    Q_OBJECT
public:
    explicit FlexGrid(QWidget* parent = nullptr);

    // Counts, heading row and column included (never below 1).
    int rows() const { return rowCount() + 1; }
    int cols() const { return columnCount() + 1; }
    void setRows(int n);
    void setCols(int n);
    // Removes every body row and all data, keeping the column layout.
    void clearGrid();

    // The current cell (0 when there is none, or it is a heading).
    int row() const;
    int col() const;
    // Makes (r, c) current and the selection that one cell.
    void setRowCol(int r, int c);
    // The other corner of the selection that holds the current cell.
    int rowSel() const;
    int colSel() const;
    // Selects the rectangle and makes (r1, c1) current.
    void selectRange(int r1, int c1, int r2, int c2);

    QString textMatrix(int r, int c) const;
    void setTextMatrix(int r, int c, const QString& text);

    qint32 rowData(int r) const;
    void setRowData(int r, qint32 v);
    qint32 colData(int c) const;
    void setColData(int c, qint32 v);
    qint32 cellData(int r, int c) const;
    void setCellData(int r, int c, qint32 v);

    enum CheckState { NoCheck = 0, Checked = 1, Unchecked = 2 };
    int cellCheck(int r, int c) const;
    void setCellCheck(int r, int c, int v);

    QColor cellBackColor(int r, int c) const;
    void setCellBackColor(int r, int c, const QColor& color);
    void setCellForeColor(int r, int c, const QColor& color);
    // A frame drawn around a body cell; an invalid colour draws none.
    QColor cellEdge(int r, int c) const;
    void setCellEdge(int r, int c, const QColor& color);
    void setCellToolTip(int r, int c, const QString& text);
    void setColAlignment(int c, Qt::Alignment a);

    // Sizes in twips; 15 twips make a pixel at 96 dpi.
    int rowHeightTwips(int r) const;
    void setRowHeightTwips(int r, int twips);
    int colWidthTwips(int c) const;
    void setColWidthTwips(int c, int twips);

    // Sizes are clamped to 0..20 inches, so a damaged file cannot make a grid
    // of absurd size. markSizesSaved records the present sizes; the Changed
    // functions tell which differ from them since.
    void markSizesSaved();
    bool rowHeightChanged(int r) const;
    bool colWidthChanged(int c) const;

    // Pixel and twip conversion at this widget's resolution.
    int twipsToPixels(int twips) const;
    int pixelsToTwips(int pixels) const;

    // When on, room the body rows and columns leave free in the viewport is
    // shared among them, so a small timetable fills its window. The sizes set
    // or dragged stay what the size functions report and what is saved; none
    // is drawn smaller than that.
    void setShareSpareRoom(bool on);

    // Index of the first body row whose text in column c equals text, or -1.
    int findRow(int c, const QString& text) const;

    // A hint drawn in the empty grid, telling the user what to do next.
    void setEmptyText(const QString& text);
    QString emptyText() const { return m_emptyText; }

Q_SIGNALS:
    // A mouse button went down on a body cell, after the cell became current.
    void gridMouseDown(int r, int c, Qt::MouseButton button);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QTableWidgetItem* item(int r, int c) const;
    QTableWidgetItem* ensureItem(int r, int c);
    void ensureDataSize();
    int dpi() const;
    // Shares the spare room again, after sizes or the viewport changed.
    void shareSpareRoom();
    void shareSpareRoomLater();

    QVector<qint32> m_rowData;
    QVector<qint32> m_colData;
    // Sizes last set in twips, so a size that was not changed on screen reads
    // back exactly as it was written and does not drift by rounding.
    QVector<int> m_rowTwips;
    QVector<int> m_colTwips;
    QVector<int> m_savedRowTwips;
    QVector<int> m_savedColTwips;
    QString m_cornerText;
    QString m_emptyText;
    QWidget* m_corner = nullptr;
    QVector<Qt::Alignment> m_colAlign;
    // Pixels each body row and column is drawn beyond its own size.
    QVector<int> m_rowExtra;
    QVector<int> m_colExtra;
    bool m_shareSpare = false;
    bool m_sharePending = false;
};
