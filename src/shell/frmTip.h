#pragma once
// "Tip of the Day": one tip from TipOfTheDay.txt in the application folder,
// a different one each time, and the choice to see it at start-up.

#include <QDialog>
#include <QStringList>

class QCheckBox;
class QLabel;
class QPushButton;

class frmTip : public QDialog {
    Q_OBJECT
public:
    explicit frmTip(QWidget* parent = nullptr, const QString& tipFile = TipFile());

    // The application folder's TipOfTheDay.txt.
    static QString TipFile();
    // Whether the window is wanted at start-up ("Show Tips at Startup").
    static bool ShowAtStartup();

    // Reads every line of the file as a tip and shows the next; false when
    // the file cannot be read.
    bool LoadTips(const QString& fileName);
    void DoNextTip();
    void DisplayCurrentTip();

    QStringList Tips;
    qint32 CurrentTip = 1;
    QLabel* lblTipText = nullptr;
    QPushButton* cmdNextTip = nullptr;
    QPushButton* cmdOk = nullptr;
    QCheckBox* chkLoadTipsAtStartup = nullptr;
};
