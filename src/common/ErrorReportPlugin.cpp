#include "common/ErrorReportPlugin.h"

#include "common/Common.h"

#include <QDir>
#include <QMetaMethod>
#include <QPluginLoader>
#include <QPointer>

namespace {
const char* const kSignature =
    "ErrorHandler(QString,QString,int,int,QString,QString,QString,QString,QString)";

class PluginReportObject : public ErrorReportObject {
public:
    explicit PluginReportObject(QObject* root) : m_root(root) {}

    void ErrorHandler(const ErrorReport& r) override {
        if (!m_root)
            return;
        const int index = m_root->metaObject()->indexOfMethod(kSignature);
        m_root->metaObject()->method(index).invoke(
            m_root, Qt::DirectConnection, Q_ARG(QString, r.module), Q_ARG(QString, r.procedure),
            Q_ARG(int, r.line), Q_ARG(int, r.number), Q_ARG(QString, r.description),
            Q_ARG(QString, r.source), Q_ARG(QString, r.variables), Q_ARG(QString, r.appTitle),
            Q_ARG(QString, r.version));
    }

    int Action() const override { return m_root ? m_root->property("Action").toInt() : 0; }

private:
    QPointer<QObject> m_root;
};
} // namespace

std::unique_ptr<ErrorReportObject> CreateReportObject(const QString& folder) {
    // The loader keeps the library loaded once found: later reports reuse the
    // same root object, as a registered component would be.
    QPluginLoader loader(QDir(folder).filePath(QString::fromLatin1(kErrorReportProgID)));
    if (loader.metaData().value(QStringLiteral("IID")).toString() !=
        QLatin1String(kErrorReportProgID))
        return nullptr;
    QObject* root = loader.instance();
    if (!root || root->metaObject()->indexOfMethod(kSignature) < 0)
        return nullptr;
    return std::make_unique<PluginReportObject>(root);
}

std::unique_ptr<ErrorReportObject> CreateInstalledReportObject() {
    return CreateReportObject(Common::AppDir());
}
