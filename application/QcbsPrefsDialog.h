#ifndef CIFWARD_QCBSPREFSDIALOG_H
#define CIFWARD_QCBSPREFSDIALOG_H

#include <QDialog>
#include <QPointer>
#include <QVector>

class QAbstractButton;
class QCheckBox;
class QDialogButtonBox;
class QLabel;
class QLineEdit;
class QRadioButton;
class QSpinBox;
class QTabWidget;
class QTreeWidget;
class QcbsDictionaryCheckBox;
class QcbsDictionarySettings;
class QcbsStylesDialog;
struct QcbsPreferences;

// The preferences of all windows in five tabs. Nothing changes until Apply or OK, which write the
// shared values and the store and then announce what changed, so that each window redoes only
// the work that the change needs. The one exception is the dictionaries: a toggle reaches the
// dictionary settings at once, and Cancel toggles back.
class QcbsPrefsDialog : public QDialog {
    Q_OBJECT
public:
    // `dictionaries` may be null: the dictionary tab then lists nothing.
    QcbsPrefsDialog(QcbsPreferences* preferences, QcbsDictionarySettings* dictionaries,
                    QWidget* parent = nullptr);

    static QString notSet() { return QStringLiteral("<not set>"); }
    QTabWidget* tabs() const { return tabs_; }
    QDialogButtonBox* buttons() const { return buttons_; }

signals:
    void prefsChanged();
    void editorPrefsChanged();
    void mainWinPrefsChanged();
    void parserPrefsChanged();
    void mandatoryPrefsChanged();
    // OK or Apply was pressed, after the values were applied.
    void applyButtonPressed();

public slots:
    void browseForTemplate();
    void browseForMandatory();
    void stylePopup();
    void applyPressed();
    void defaultPressed();
    void stylesChanged();
    void reject() override;

protected:
    // The file dialog; empty when the user cancels.
    virtual QString chooseFile(const QString& caption, const QString& current);

private:
    QWidget* createGeneralTab();
    QWidget* createCheckingTab();
    QWidget* createEditorTab();
    QWidget* createDictionaryTab();
    QWidget* createWizardTab();
    void showValues(const QcbsPreferences& values);
    void setTemplatePath(const QString& path);
    void setMandatoryPath(const QString& path);
    bool dictionariesChanged() const;
    void buttonClicked(QAbstractButton* button);

    QcbsPreferences* preferences_;
    QcbsDictionarySettings* dictionaries_;
    QTabWidget* tabs_ = nullptr;
    QDialogButtonBox* buttons_ = nullptr;

    QRadioButton* multipleWindows_ = nullptr;
    QRadioButton* reuseWindow_ = nullptr;
    QCheckBox* textOnButtons_ = nullptr;
    QCheckBox* saveBackup_ = nullptr;

    QSpinBox* lineLengthLimit_ = nullptr;
    QSpinBox* tolerance_ = nullptr;
    QSpinBox* maxConsecError_ = nullptr;
    QLabel* mandatoryLabel_ = nullptr;
    QCheckBox* checkMandatory_ = nullptr;
    QString mandatoryPath_;

    QLabel* templateLabel_ = nullptr;
    QCheckBox* startWithTemplate_ = nullptr;
    QCheckBox* lineNumbers_ = nullptr;
    QString templatePath_;

    QTreeWidget* dictionaryList_ = nullptr;
    struct DictionaryRow {
        QcbsDictionaryCheckBox* box;
        bool applied; // the state at opening or at the last Apply
    };
    QVector<DictionaryRow> dictionaryRows_;

    QLineEdit* contactName_ = nullptr;
    QLineEdit* contactAddress_ = nullptr;
    QLineEdit* contactEmail_ = nullptr;
    QLineEdit* contactPhone_ = nullptr;

    QPointer<QcbsStylesDialog> stylesDialog_;
};

#endif
