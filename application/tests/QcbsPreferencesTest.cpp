#include "QcbsPreferences.h"

#include "GuiTestSupport.h"
#include "QcbsStyleStore.h"

#include <QDir>
#include <QFile>
#include <QtTest>
#include <functional>
#include <memory>
#include <vector>

namespace {

using Prefs = QcbsPreferences;

// One preference: its key, its default, another value to store, and a stored text that is not of
// its type (null for texts, where any stored text is a value).
struct Field {
    const char* key;
    QVariant defaultValue;
    QVariant other;
    const char* garbage;
    std::function<QVariant(const Prefs&)> get;
    std::function<void(Prefs&, const QVariant&)> set;
};

template <class T>
Field field(const char* key, T Prefs::*member, T defaultValue, T other, const char* garbage)
{
    return {key,
            QVariant::fromValue(defaultValue),
            QVariant::fromValue(other),
            garbage,
            [member](const Prefs& p) { return QVariant::fromValue(p.*member); },
            [member](Prefs& p, const QVariant& v) { p.*member = v.value<T>(); }};
}

const std::vector<Field>& fields()
{
    static const std::vector<Field> table = {
        field("text on buttons", &Prefs::textOnButtons, false, true, "maybe"),
        field("window height", &Prefs::windowHeight, 650, 1024, "abc"),
        field("window width", &Prefs::windowWidth, 800, 1280, "-5"),
        field("max consec error", &Prefs::maxConsecError, 4, 9, "4.5"),
        field("reuse window", &Prefs::reuseWindow, false, true, "2"),
        field("start with template", &Prefs::startWithTemplate, false, true, "yes"),
        field("template filename", &Prefs::templateFilename, QString(), QStringLiteral("/t/template.cif"),
              nullptr),
        field("check mandatory items", &Prefs::checkMandatoryItems, false, true, ""),
        field("mandatory filename", &Prefs::mandatoryFilename, QString(), QStringLiteral("/t/m, items.txt"),
              nullptr),
        field("font changesize", &Prefs::fontChangeSize, 0, -4, "big"),
        field("line numbers", &Prefs::lineNumbers, false, true, "on"),
        field("save backup file", &Prefs::saveBackupFile, false, true, "truefalse"),
        field("line length limit", &Prefs::lineLengthLimit, 80, 132, "0x50"),
        field("contact name", &Prefs::contactName, QString(), QStringLiteral("A. Author"), nullptr),
        field("contact address", &Prefs::contactAddress, QString(), QStringLiteral("1 Road, Town"), nullptr),
        field("contact phone", &Prefs::contactPhone, QString(), QStringLiteral("+44 1"), nullptr),
        field("contact fax", &Prefs::contactFax, QString(), QStringLiteral("+44 2"), nullptr),
        field("contact email", &Prefs::contactEmail, QString(), QStringLiteral("a@b.org"), nullptr),
        field("find/checkcase", &Prefs::findCheckCase, false, true, "x"),
        field("find/checkwords", &Prefs::findCheckWords, false, true, "-1"),
        field("find/radioForward", &Prefs::findForward, true, false, "forward"),
    };
    return table;
}

QString key(const QString& name)
{
    return QStringLiteral("/Cifward/") + name;
}

void store(const QMap<QString, QVariant>& values)
{
    QSettings settings(QStringLiteral("NLDC"), QStringLiteral("Cifward"));
    for (auto value = values.begin(); value != values.end(); ++value)
        settings.setValue(key(value.key()), value.value());
}

QVariant stored(const QString& name)
{
    return QSettings(QStringLiteral("NLDC"), QStringLiteral("Cifward")).value(key(name));
}

} // namespace

class QcbsPreferencesTest : public QObject {
    Q_OBJECT
private slots:
    void init()
    {
        useStoreDir(isolated_.path());
        isolated_.clear();
    }

    void eachKey_data()
    {
        QTest::addColumn<int>("row");
        for (std::size_t row = 0; row < fields().size(); ++row)
            QTest::newRow(fields()[row].key) << int(row);
    }
    // The default from an empty store, the default again for a value of the wrong type, and another
    // value through a write and a restart.
    void eachKey()
    {
        QFETCH(int, row);
        const Field& f = fields()[row];
        QCOMPARE(f.get(Prefs::read()), f.defaultValue);
        if (f.garbage) {
            store({{QLatin1String(f.key), QString::fromLatin1(f.garbage)}});
            QCOMPARE(f.get(Prefs::read()), f.defaultValue);
        }
        Prefs written;
        f.set(written, f.other);
        written.write();
        restart();
        QCOMPARE(stored(QLatin1String(f.key)).toString(), f.other.toString());
        QCOMPARE(f.get(Prefs::read()), f.other);
    }

    // A directory where the store file should be: nothing can be read or written there.
    void damagedStoreGivesDefaults()
    {
        const QString dir = freshDir();
        const QString file = dir + QStringLiteral("/NLDC/Cifward.conf");
        QVERIFY(QDir().mkpath(file));
        useStoreDir(dir);
        QCOMPARE(QSettings(QStringLiteral("NLDC"), QStringLiteral("Cifward")).fileName(), file);
        const Prefs read = Prefs::read();
        for (const Field& f : fields())
            QCOMPARE(f.get(read), f.defaultValue);
        read.write(); // must fail silently
    }

    // The newest six recent files are kept, and the find history as it was.
    void lists()
    {
        const QStringList eight = {"a.cif", "b.cif", "c.cif", "d.cif", "e.cif", "f.cif", "g.cif", "h.cif"};
        Prefs p;
        p.recentFiles = eight;
        p.findRecent = {"_cell", "x, y"};
        p.write();
        restart();
        QCOMPARE(Prefs::read().recentFiles, eight.mid(2));
        QCOMPARE(Prefs::read().findRecent, QStringList({"_cell", "x, y"}));
        QCOMPARE(stored(QStringLiteral("recent files/1")).toString(), QStringLiteral("c.cif"));
    }

    void readStyles_data()
    {
        using Stored = QMap<QString, QVariant>;
        QTest::addColumn<Stored>("stored");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QFont>("font"); // family, point size and weight compared
        QTest::addColumn<QColor>("color");
        QTest::addColumn<int>("storedSize");
        const Stored zoomed = {{"styles/Standard/family", "Courier"},
                               {"styles/Comment/family", "Times"},
                               {"styles/Comment/size", 20},
                               {"styles/Comment/bold", true},
                               {"styles/Comment/red", 10},
                               {"styles/Comment/green", 20},
                               {"styles/Comment/blue", 30},
                               {"font changesize", 2}};
        QTest::newRow("empty store: shipped")
            << Stored() << "String" << QFont("Courier", 12, QFont::Bold) << QColor(0, 85, 0) << 12;
        QTest::newRow("stored style zoomed")
            << zoomed << "Comment" << QFont("Times", 22, QFont::Bold) << QColor(10, 20, 30) << 20;
        QTest::newRow("values of wrong type")
            << Stored{{"styles/Standard/family", "Helvetica"}, {"styles/Standard/size", "huge"},
                      {"styles/Standard/bold", "maybe"},       {"styles/Standard/red", 300},
                      {"styles/Standard/green", "x"},          {"styles/Standard/blue", -1}}
            << "Standard" << QFont("Helvetica", 12) << QColor(Qt::black) << 12;
    }
    void readStyles()
    {
        QFETCH(QVariantMap, stored);
        QFETCH(QString, name);
        QFETCH(QFont, font);
        QFETCH(QColor, color);
        QFETCH(int, storedSize);
        store(stored);
        const QcbsStyle style = QcbsStyleStore::read().value(name);
        QCOMPARE(style.font.family(), font.family());
        QCOMPARE(style.font.pointSize(), font.pointSize());
        QCOMPARE(style.font.bold(), font.bold());
        QCOMPARE(style.color, color);
        // A store without styles gets the shipped set written back.
        QCOMPARE(::stored(QStringLiteral("styles/") + name + QStringLiteral("/family")).toString(),
                 font.family());
        // Whatever was read is on disk now, without the zoom, and survives a restart.
        restart();
        const QcbsStyles again = QcbsStyleStore::read(0);
        QCOMPARE(again.size(), 13);
        QCOMPARE(again.value(name).font.family(), font.family());
        QCOMPARE(again.value(name).font.pointSize(), storedSize);
        QCOMPARE(again.value(name).color, color);
    }

private:
    // Reads from a copy of the store file in a directory of its own, as a new process would:
    // Qt keeps the files it has parsed.
    void restart()
    {
        const QString file = QSettings(QStringLiteral("NLDC"), QStringLiteral("Cifward")).fileName();
        const QString dir = freshDir();
        QVERIFY(QFile::copy(file, dir + QStringLiteral("/NLDC/") + QFileInfo(file).fileName()));
        useStoreDir(dir);
    }

    QString freshDir()
    {
        restarts_.push_back(std::make_unique<QTemporaryDir>());
        QDir(restarts_.back()->path()).mkpath(QStringLiteral("NLDC"));
        return restarts_.back()->path();
    }

    void useStoreDir(const QString& dir)
    {
        for (QSettings::Scope scope : {QSettings::UserScope, QSettings::SystemScope})
            QSettings::setPath(QSettings::NativeFormat, scope, dir);
    }

    IsolatedSettings isolated_;
    std::vector<std::unique_ptr<QTemporaryDir>> restarts_;
};

QTEST_MAIN(QcbsPreferencesTest)
#include "QcbsPreferencesTest.moc"
