// Every folder under src/ is a layer that may include only itself and the
// layers below it. Reading the includes keeps the architecture honest as the
// program grows: a back-include fails here, naming the file and line.

#include <QtCore>
#include <QtTest>

namespace {
// Each layer and the layers it may include besides itself.
const QHash<QString, QSet<QString>>& allowedIncludes() {
    static const QHash<QString, QSet<QString>> table = {
        {"common", {}},
        {"store", {"common"}},
        {"timetable", {"common", "store"}},
        {"scheduling", {"common", "store", "timetable"}},
        {"autofill", {"common", "store", "timetable", "scheduling"}},
        {"wizards", {"common", "store", "timetable"}},
        {"manage", {"common", "store", "timetable", "scheduling"}},
        {"print", {"common", "store", "timetable", "scheduling"}},
        {"shell",
         {"common", "store", "timetable", "scheduling", "autofill", "wizards", "manage", "print"}},
        {"app", {"shell"}},
    };
    return table;
}

// "file:line: layer includes other" for every include that breaks the table.
QStringList backIncludes(const QString& srcDir) {
    static const QRegularExpression include(QStringLiteral(R"(^\s*#\s*include\s*"([^"/]+)/)"));
    QStringList faults;
    QDirIterator it(srcDir, {"*.h", "*.cpp", "*.ui"}, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        const QString relative = QDir(srcDir).relativeFilePath(path);
        const QString layer = relative.section(QLatin1Char('/'), 0, 0);
        if (!allowedIncludes().contains(layer)) {
            faults << relative + QStringLiteral(": folder is not in the layer table");
            continue;
        }
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
            faults << relative + QStringLiteral(": cannot be read");
            continue;
        }
        int line = 0;
        while (!file.atEnd()) {
            ++line;
            const auto m = include.match(QString::fromUtf8(file.readLine()));
            if (!m.hasMatch())
                continue;
            const QString target = m.captured(1);
            if (target != layer && !allowedIncludes().value(layer).contains(target))
                faults << QStringLiteral("%1:%2: %3 includes %4, a layer above it")
                              .arg(relative)
                              .arg(line)
                              .arg(layer, target);
        }
    }
    return faults;
}
} // namespace

class TestLayers : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void noLayerIncludesALayerAboveIt() {
        const QStringList faults = backIncludes(QStringLiteral(VANTOR_SOURCE_DIR "/src"));
        QVERIFY2(faults.isEmpty(), qPrintable(faults.join(QLatin1Char('\n'))));
    }
    void aBackIncludeIsFound() {
        // The check itself must see a fault planted in a copy of a layer.
        QTemporaryDir dir;
        QVERIFY(QDir(dir.path()).mkpath(QStringLiteral("store")));
        QFile planted(dir.filePath(QStringLiteral("store/Bad.cpp")));
        QVERIFY(planted.open(QIODevice::WriteOnly));
        planted.write("#include \"common/Common.h\"\n\n#include \"shell/frmMain.h\"\n");
        planted.close();
        QCOMPARE(
            backIncludes(dir.path()),
            QStringList{QStringLiteral("store/Bad.cpp:3: store includes shell, a layer above it")});
    }
};

QTEST_GUILESS_MAIN(TestLayers)
#include "test_layers.moc"
