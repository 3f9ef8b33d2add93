#pragma once
// The progress window's animation: a small week of periods filling with
// coloured lessons, cell by cell, and starting over. Drawn, so it needs no
// clip file or codec.

#include <QBasicTimer>
#include <QWidget>

class FillAnimation : public QWidget {
    Q_OBJECT
public:
    explicit FillAnimation(QWidget* parent = nullptr);

    void play();
    void stop();
    bool isPlaying() const { return m_timer.isActive(); }
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    int m_frame = 0;
    QBasicTimer m_timer;
};
