// A stand-in for an installed error-report component: it keeps what it was
// given and answers with whatever Action the test set.

#include <QObject>
#include <QStringList>
#include <QtPlugin>

class FakeErrorReport : public QObject {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "VantorErrorLibrary.Error")
    Q_PROPERTY(int Action MEMBER m_action)
    Q_PROPERTY(QStringList Received MEMBER m_received)

public:
    Q_INVOKABLE void ErrorHandler(const QString& module, const QString& procedure, int line,
                                  int number, const QString& description, const QString& source,
                                  const QString& variables, const QString& appTitle,
                                  const QString& version) {
        m_received = {module,
                      procedure,
                      QString::number(line),
                      QString::number(number),
                      description,
                      source,
                      variables,
                      appTitle,
                      version};
    }

private:
    int m_action = 0;
    QStringList m_received;
};

#include "FakeErrorReport.moc"
