// Writes screenshots of the CIF editor (line numbers, an error mark, Greek escapes, super- and
// subscripts), of the five tabs of the preferences dialog, of the styles dialog and of the
// special characters window. The settings live in a temporary directory for the run, so the
// user's own are never touched.

#include "IsolatedSettings.h"
#include "QcbsDictionaryLoader.h"
#include "QcbsDictionarySettings.h"
#include "QcbsLineNumberedTextEdit.h"
#include "QcbsPreferences.h"
#include "QcbsPrefsDialog.h"
#include "QcbsRichTextEdit.h"
#include "QcbsSpecialCharDialog.h"
#include "QcbsStylesDialog.h"
#include "QcbsSyntaxHighlighter_CIF.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QTabWidget>
#include <QTextBlock>
#include <cstdio>

namespace {

bool save(QWidget* widget, const QString& path)
{
    QApplication::processEvents();
    if (!widget->grab().save(path)) {
        std::fprintf(stderr, "cifward-editor-shots: cannot write %s\n", qPrintable(path));
        return false;
    }
    std::printf("%s\n", qPrintable(path));
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    if (argc < 2) {
        std::fprintf(stderr, "usage: cifward-editor-shots OUTDIR [CIF]\n");
        return 2;
    }
    const QString out = QString::fromLocal8Bit(argv[1]);
    const IsolatedSettings settings;
    if (!QDir().mkpath(out)) {
        std::fprintf(stderr, "cifward-editor-shots: cannot create %s\n", qPrintable(out));
        return 2;
    }

    // A real CIF, with a few lines that show the escapes on top.
    QString text = QStringLiteral("# Escapes: \\a-helix, \\b-sheet, 90\\%, 1.54 \\%A, r\\'esum\\'e\n"
                                  "_exptl_special_details\n"
                                  ";\n"
                                  "Cell at 100 K: V = 512.3 \\%A^3^, \\m = 0.12 mm^-1^, \\q~max~ = 27.5\\%\n"
                                  "H~2~O and Cu~2~(OH)~2~ with \\s(I) > 2\\s(I)\n"
                                  ";\n");
    if (argc > 2) {
        QFile file(QString::fromLocal8Bit(argv[2]));
        if (!file.open(QIODevice::ReadOnly)) {
            std::fprintf(stderr, "cifward-editor-shots: cannot read %s\n", argv[2]);
            return 2;
        }
        text += QString::fromLatin1(file.readAll());
    }

    QcbsDictionaryLoader loader;
    const HCifDictionaryPool all = loader.load(QCoreApplication::applicationDirPath());
    QcbsDictionarySettings dictionaries(all);

    QcbsLineNumberedTextEdit edit;
    edit.resize(900, 640);
    edit.editor()->highlighter()->setDictionary(dictionaries.settings());
    edit.editor()->setText(text);
    edit.show();
    QApplication::processEvents();
    edit.editor()->setLinesAtCheck(edit.editor()->document()->blockCount());
    edit.editor()->setErrorHighlighting(12, 1, true);
    bool ok = save(&edit, out + QStringLiteral("/editor.png"));

    QcbsPreferences preferences = QcbsPreferences::read();
    QcbsPrefsDialog prefs(&preferences, &dictionaries);
    prefs.show();
    for (int i = 0; i < prefs.tabs()->count(); ++i) {
        prefs.tabs()->setCurrentIndex(i);
        ok &= save(&prefs, out + QStringLiteral("/prefs-%1.png").arg(i + 1));
    }

    QcbsStylesDialog styles;
    styles.show();
    ok &= save(&styles, out + QStringLiteral("/styles.png"));

    QcbsSpecialCharDialog special;
    special.resize(640, 600);
    special.show();
    ok &= save(&special, out + QStringLiteral("/special-characters.png"));
    return ok ? 0 : 1;
}
