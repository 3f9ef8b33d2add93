#include "support/TestSupport.h"

#include "store/ModMain.h"
#include "store/TimeText.h"
#include "wizards/WizardState.h"

#include <QtTest>
#include <QtWidgets>
#include <sqlite3.h>

namespace TestSupport {

ScopedEnv::ScopedEnv(const char* name, const QByteArray& value)
    : m_name(name), m_old(qgetenv(name)), m_had(qEnvironmentVariableIsSet(name)) {
    qputenv(name, value);
}

ScopedEnv::~ScopedEnv() {
    if (m_had)
        qputenv(m_name, m_old);
    else
        qunsetenv(m_name);
}
TestEnv::TestEnv()
    : m_config("XDG_CONFIG_HOME", m_dir.filePath(QStringLiteral("config")).toLocal8Bit()) {
    QDir().mkpath(m_dir.filePath(QStringLiteral("config")));
    if (qEnvironmentVariableIsEmpty("VANTOR_APP_DIR"))
        qputenv("VANTOR_APP_DIR", QByteArray(VANTOR_TEST_APP_DIR));
    ModMain::DB().DBClose();
}

TestEnv::~TestEnv() {
    ModMain::DB().DBClose();
}

QString TestEnv::newProject(const QString& name) const {
    const QString target = path(name);
    QFile::remove(target);
    if (!QFile::copy(Common::AppDir() + QStringLiteral("/blank.db"), target))
        qFatal("cannot copy blank.db from %s", qPrintable(Common::AppDir()));
    QFile(target).setPermissions(QFile::ReadOwner | QFile::WriteOwner);
    return target;
}

QString TestEnv::newProjectWithCalendar(const QStringList& days, const QStringList& startTimes,
                                        const QString& name) const {
    const QString file = newProject(name);
    clsSQLite db;
    if (!db.DBOpen(file))
        qFatal("cannot open %s", qPrintable(file));
    for (int i = 0; i + 1 < startTimes.size(); ++i) {
        const QTime start = TimeText::Parse(startTimes.at(i));
        const QTime end = TimeText::Parse(startTimes.at(i + 1));
        db.Execute(
            QStringLiteral(
                "INSERT INTO ProjectTimeTitle (StartTime,Duration,Width,Height,SpecialID,Pos) "
                "VALUES ('%1 ', '%2',1600,600,1, %3);")
                .arg(TimeText::ToText(start))
                .arg(start.secsTo(end) / 60)
                .arg(i + 1));
    }
    for (int i = 0; i < days.size(); ++i)
        db.Execute(QStringLiteral("INSERT INTO ProjectDayTitle (DOW,Height,Width,SpecialID,Pos) "
                                  "VALUES ('%1',600,600,1,%2)")
                       .arg(Common::SQLReplace(days.at(i)))
                       .arg(i + 1));
    db.DBClose();
    return file;
}

QByteArray readFile(const QString& path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

QString writeFile(const QString& path, const QByteArray& bytes) {
    QFile f(path);
    if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate) || f.write(bytes) != bytes.size())
        qFatal("cannot write %s", qPrintable(path));
    return path;
}

QString dump(const QString& file) {
    sqlite3* db = nullptr;
    if (sqlite3_open_v2(file.toUtf8().constData(), &db, SQLITE_OPEN_READONLY, nullptr) !=
        SQLITE_OK) {
        sqlite3_close(db);
        return QStringLiteral("cannot open");
    }
    QStringList out;
    QStringList tables;
    sqlite3_stmt* st = nullptr;
    sqlite3_prepare_v2(db, "SELECT name FROM sqlite_master WHERE type='table' ORDER BY name", -1,
                       &st, nullptr);
    while (sqlite3_step(st) == SQLITE_ROW)
        tables << QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(st, 0)));
    sqlite3_finalize(st);
    for (const QString& table : tables) {
        const QByteArray sql = "SELECT * FROM \"" + table.toUtf8() + "\" ORDER BY rowid";
        sqlite3_prepare_v2(db, sql.constData(), -1, &st, nullptr);
        while (sqlite3_step(st) == SQLITE_ROW) {
            QStringList row{table};
            for (int c = 0; c < sqlite3_column_count(st); ++c)
                row << (sqlite3_column_type(st, c) == SQLITE_NULL
                            ? QStringLiteral("<null>")
                            : QString::fromUtf8(
                                  reinterpret_cast<const char*>(sqlite3_column_text(st, c))));
            out << row.join(QLatin1Char('|'));
        }
        sqlite3_finalize(st);
    }
    sqlite3_close(db);
    return out.join(QLatin1Char('\n'));
}

bool TestEnv::open(const QString& file) const {
    ModMain::DB().DBClose();
    return ModMain::DB().DBOpen(file);
}

MessageRecorder::MessageRecorder() {
    Common::SetMsgBoxHandler([this](const QString& text, Common::MsgButtons buttons,
                                    Common::MsgIcon icon, const QString& title) {
        const ShownMessage shown{text, buttons, icon, title};
        m_messages.append(shown);
        if (m_onShow)
            m_onShow(shown);
        return m_answers.isEmpty() ? m_default : m_answers.takeFirst();
    });
}

MessageRecorder::~MessageRecorder() {
    Common::SetMsgBoxHandler({});
}

QStringList MessageRecorder::texts() const {
    QStringList out;
    for (const ShownMessage& m : m_messages)
        out << m.text;
    return out;
}

FileDialogRecorder::FileDialogRecorder() {
    Common::SetFileDialogHandler([this](Common::FileDialogRequest& request) {
        m_requests.append(request);
        const QString name = m_names.isEmpty() ? QString() : m_names.takeFirst();
        if (name.isEmpty())
            return false;
        request.fileName = name;
        return true;
    });
}

FileDialogRecorder::~FileDialogRecorder() {
    Common::SetFileDialogHandler({});
}

namespace {
class RecordingReportObject : public ErrorReportObject {
public:
    explicit RecordingReportObject(std::shared_ptr<QList<ErrorReport>> reports)
        : m_reports(std::move(reports)) {}
    void ErrorHandler(const ErrorReport& report) override { m_reports->append(report); }
    int Action() const override { return 0; }

private:
    std::shared_ptr<QList<ErrorReport>> m_reports;
};
} // namespace

ErrorRecorder::ErrorRecorder() : m_reports(std::make_shared<QList<ErrorReport>>()) {
    auto reports = m_reports;
    SetErrorReportFactory([reports] { return std::make_unique<RecordingReportObject>(reports); });
}

ErrorRecorder::~ErrorRecorder() {
    SetErrorReportFactory({});
}

void clickButton(QWidget* screen, const char* name) {
    control<QPushButton>(screen, name)->click();
}

QString ModalDriver::run(const std::function<void()>& code) {
    QString error;
    QPointer<QDialog> last;
    int idle = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
        auto* dlg = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        idle = dlg == last ? idle + 1 : 0;
        const bool stop = QTest::currentTestFailed() || idle > 3000;
        if (dlg && dlg != last && !stop && !m_steps.isEmpty() &&
            m_steps.first().first == dlg->objectName()) {
            last = dlg;
            // Not from inside this poll: the step may wait in a further screen.
            QTimer::singleShot(0, dlg, [dlg, step = m_steps.takeFirst().second] { step(dlg); });
        } else if (dlg && (dlg != last || stop)) {
            if (error.isEmpty())
                error = QStringLiteral("stopped on ") + dlg->objectName();
            m_steps.clear();
            Wizard::state().WizardCancel = true; // so no screen comes back
            dlg->reject();
        }
    });
    timer.start(1);
    code();
    for (const auto& step : std::as_const(m_steps))
        error += QStringLiteral(" never shown: ") + step.first;
    m_steps.clear();
    return error;
}

} // namespace TestSupport
