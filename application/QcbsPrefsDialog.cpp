#include "QcbsPrefsDialog.h"

#include "QcbsDictionaryCheckBox.h"
#include "QcbsDictionarySettings.h"
#include "QcbsPreferences.h"
#include "QcbsStylesDialog.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QTabWidget>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {

const char* const fileFilter = "CIF (*.cif);;Text (*.txt);;All Files (*)";

template <class Widget> Widget* named(Widget* widget, const char* name)
{
    widget->setObjectName(QLatin1String(name));
    return widget;
}

QSpinBox* spinBox(const char* name, int min, int max)
{
    QSpinBox* spin = named(new QSpinBox, name);
    spin->setRange(min, max);
    return spin;
}

// A tab page of groups stacked from the top, with the spare room below them.
QWidget* page(std::initializer_list<QWidget*> groups)
{
    auto* widget = new QWidget;
    auto* layout = new QVBoxLayout(widget);
    for (QWidget* group : groups)
        layout->addWidget(group);
    layout->addStretch();
    return widget;
}

QGroupBox* group(const QString& title, const char* name, std::initializer_list<QWidget*> widgets)
{
    QGroupBox* box = named(new QGroupBox(title), name);
    auto* layout = new QVBoxLayout(box);
    for (QWidget* widget : widgets)
        layout->addWidget(widget);
    return box;
}

// A file's path beside its Browse button.
QWidget* pathRow(QLabel* label, QPushButton* browse)
{
    auto* row = new QWidget;
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    layout->addWidget(label, 1);
    layout->addWidget(browse);
    return row;
}

} // namespace

QcbsPrefsDialog::QcbsPrefsDialog(QcbsPreferences* preferences, QcbsDictionarySettings* dictionaries,
                                 QWidget* parent)
    : QDialog(parent), preferences_(preferences), dictionaries_(dictionaries)
{
    setWindowTitle(tr("Preferences"));
    setMinimumSize(400, 275);

    tabs_ = named(new QTabWidget, "tabs");
    // All five tabs in sight: the dialog opens wide enough for them.
    tabs_->setUsesScrollButtons(false);
    tabs_->addTab(createGeneralTab(), tr("General"));
    tabs_->addTab(createCheckingTab(), tr("CIF checking"));
    tabs_->addTab(createEditorTab(), tr("Editor"));
    tabs_->addTab(createDictionaryTab(), tr("Dictionaries"));
    tabs_->addTab(createWizardTab(), tr("Wizard"));

    buttons_ = named(new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel |
                                          QDialogButtonBox::RestoreDefaults | QDialogButtonBox::Apply),
                     "buttons");
    buttons_->button(QDialogButtonBox::RestoreDefaults)->setText(tr("Defaults"));

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(tabs_);
    layout->addWidget(buttons_);

    showValues(*preferences_);

    connect(buttons_, &QDialogButtonBox::clicked, this, &QcbsPrefsDialog::buttonClicked);
}

QWidget* QcbsPrefsDialog::createGeneralTab()
{
    multipleWindows_ = named(new QRadioButton(tr("Use multiple windows")), "multipleWindows");
    reuseWindow_ = named(new QRadioButton(tr("Reuse single window")), "reuseWindow");
    textOnButtons_ = named(new QCheckBox(tr("Show text on toolbar buttons")), "textOnButtons");
    saveBackup_ = named(new QCheckBox(tr("Save backup CIFs")), "saveBackup");
    return page({group(tr("Interface"), "interfaceGroup", {multipleWindows_, reuseWindow_, textOnButtons_}),
                 group(tr("Backup CIFs"), "backupGroup", {saveBackup_})});
}

QWidget* QcbsPrefsDialog::createCheckingTab()
{
    using P = QcbsPreferences;
    lineLengthLimit_ = spinBox("lineLengthLimit", P::minLineLengthLimit, P::maxLineLengthLimit);
    tolerance_ = spinBox("lineLengthTolerance", P::minTolerance, P::maxTolerance);
    maxConsecError_ = spinBox("maxConsecError", P::minConsecError, P::maxConsecErrorLimit);
    auto* parser = named(new QGroupBox(tr("Parser")), "parserGroup");
    auto* form = new QFormLayout(parser);
    form->addRow(tr("Soft line length limit"), lineLengthLimit_);
    form->addRow(tr("Tolerance"), tolerance_);
    form->addRow(tr("Maximum consecutive\nerror lines"), maxConsecError_);

    mandatoryLabel_ = named(new QLabel(notSet()), "mandatoryFile");
    auto* browse = named(new QPushButton(tr("Browse")), "browseMandatory");
    checkMandatory_ = named(new QCheckBox(tr("Check for Mandatory Data Items")), "checkMandatory");
    connect(browse, &QPushButton::clicked, this, &QcbsPrefsDialog::browseForMandatory);
    return page({parser, group(tr("Mandatory Data Items File"), "mandatoryGroup",
                               {pathRow(mandatoryLabel_, browse), checkMandatory_})});
}

QWidget* QcbsPrefsDialog::createEditorTab()
{
    templateLabel_ = named(new QLabel(notSet()), "templateFile");
    auto* browse = named(new QPushButton(tr("Browse")), "browseTemplate");
    startWithTemplate_ = named(new QCheckBox(tr("Always start with template")), "startWithTemplate");
    auto* styles = named(new QPushButton(tr("Click to change style settings")), "styleButton");
    lineNumbers_ = named(new QCheckBox(tr("Show line numbers")), "lineNumbers");
    connect(browse, &QPushButton::clicked, this, &QcbsPrefsDialog::browseForTemplate);
    connect(styles, &QPushButton::clicked, this, &QcbsPrefsDialog::stylePopup);
    return page(
        {group(tr("Template File"), "templateGroup", {pathRow(templateLabel_, browse), startWithTemplate_}),
         group(tr("Fonts and Colours"), "stylesGroup", {styles}),
         group(tr("Line numbers"), "lineNumbersGroup", {lineNumbers_})});
}

QWidget* QcbsPrefsDialog::createDictionaryTab()
{
    dictionaryList_ = named(new QTreeWidget, "dictionaries");
    dictionaryList_->setHeaderLabels({tr("Enabled"), tr("Name"), tr("Version"), tr("Date")});
    dictionaryList_->setRootIsDecorated(false);
    dictionaryList_->setSelectionMode(QAbstractItemView::NoSelection);
    if (dictionaries_) {
        for (const HCifConcreteDictionary& dictionary : *dictionaries_->all()) {
            const CifDictionaryHeader& header = dictionary->header();
            auto* item = new QTreeWidgetItem(dictionaryList_, {QString(), QString::fromStdString(header.name),
                                                               QString::fromStdString(header.version),
                                                               QString::fromStdString(header.update)});
            auto* box = new QcbsDictionaryCheckBox(dictionary);
            const bool enabled = dictionaries_->isEnabled(dictionary);
            box->setChecked(enabled);
            dictionaryList_->setItemWidget(item, 0, box);
            dictionaryRows_.append({box, enabled});
            connect(box, &QcbsDictionaryCheckBox::setDictionaryEnabled, dictionaries_,
                    &QcbsDictionarySettings::setDictionaryEnabled);
        }
    }
    for (int column = 0; column < dictionaryList_->columnCount(); ++column)
        dictionaryList_->resizeColumnToContents(column);
    return page({dictionaryList_});
}

QWidget* QcbsPrefsDialog::createWizardTab()
{
    contactName_ = named(new QLineEdit, "contactName");
    contactAddress_ = named(new QLineEdit, "contactAddress");
    contactEmail_ = named(new QLineEdit, "contactEmail");
    contactPhone_ = named(new QLineEdit, "contactPhone");
    auto* contact = named(new QGroupBox(tr("Contact author details")), "contactGroup");
    auto* form = new QFormLayout(contact);
    form->addRow(tr("Name :"), contactName_);
    form->addRow(tr("Address :"), contactAddress_);
    form->addRow(tr("Email :"), contactEmail_);
    form->addRow(tr("Telephone :"), contactPhone_);
    return page({contact});
}

void QcbsPrefsDialog::showValues(const QcbsPreferences& values)
{
    (values.reuseWindow ? reuseWindow_ : multipleWindows_)->setChecked(true);
    textOnButtons_->setChecked(values.textOnButtons);
    saveBackup_->setChecked(values.saveBackupFile);
    lineLengthLimit_->setValue(values.lineLengthLimit);
    tolerance_->setValue(values.lineLengthTolerance);
    maxConsecError_->setValue(values.maxConsecError);
    setMandatoryPath(values.mandatoryFilename);
    checkMandatory_->setChecked(values.checkMandatoryItems);
    setTemplatePath(values.templateFilename);
    startWithTemplate_->setChecked(values.startWithTemplate);
    lineNumbers_->setChecked(values.lineNumbers);
    contactName_->setText(values.contactName);
    contactAddress_->setText(values.contactAddress);
    contactEmail_->setText(values.contactEmail);
    contactPhone_->setText(values.contactPhone);
}

void QcbsPrefsDialog::setTemplatePath(const QString& path)
{
    templatePath_ = path;
    templateLabel_->setText(path.isEmpty() ? notSet() : path);
    templateLabel_->setToolTip(path);
}

void QcbsPrefsDialog::setMandatoryPath(const QString& path)
{
    mandatoryPath_ = path;
    mandatoryLabel_->setText(path.isEmpty() ? notSet() : path);
    mandatoryLabel_->setToolTip(path);
}

bool QcbsPrefsDialog::dictionariesChanged() const
{
    for (const DictionaryRow& row : dictionaryRows_)
        if (row.box->isChecked() != row.applied)
            return true;
    return false;
}

void QcbsPrefsDialog::buttonClicked(QAbstractButton* button)
{
    switch (buttons_->standardButton(button)) {
    case QDialogButtonBox::Ok:
        applyPressed();
        emit applyButtonPressed();
        accept();
        break;
    case QDialogButtonBox::Apply:
        applyPressed();
        emit applyButtonPressed();
        break;
    case QDialogButtonBox::RestoreDefaults:
        defaultPressed();
        break;
    case QDialogButtonBox::Cancel:
        reject();
        break;
    default:
        break;
    }
}

QString QcbsPrefsDialog::chooseFile(const QString& caption, const QString& current)
{
    return QFileDialog::getOpenFileName(this, caption, QFileInfo(current).path(), QLatin1String(fileFilter));
}

void QcbsPrefsDialog::browseForTemplate()
{
    const QString path = chooseFile(tr("Choose a template file"), templatePath_);
    if (!path.isEmpty())
        setTemplatePath(path);
}

void QcbsPrefsDialog::browseForMandatory()
{
    const QString path = chooseFile(tr("Choose a mandatory items file"), mandatoryPath_);
    if (!path.isEmpty())
        setMandatoryPath(path);
}

void QcbsPrefsDialog::stylePopup()
{
    if (!stylesDialog_) {
        stylesDialog_ = new QcbsStylesDialog(this);
        connect(stylesDialog_, &QcbsStylesDialog::userChangedStyle, this, &QcbsPrefsDialog::stylesChanged);
    }
    stylesDialog_->show();
    stylesDialog_->raise();
    stylesDialog_->activateWindow();
}

// Styles are stored as soon as the styles dialog changes them, so the editors follow at once
// rather than at Apply.
void QcbsPrefsDialog::stylesChanged()
{
    emit editorPrefsChanged();
}

void QcbsPrefsDialog::applyPressed()
{
    QcbsPreferences& p = *preferences_;
    const bool mainWindow =
        reuseWindow_->isChecked() != p.reuseWindow || textOnButtons_->isChecked() != p.textOnButtons;
    const bool editor = templatePath_ != p.templateFilename ||
                        startWithTemplate_->isChecked() != p.startWithTemplate ||
                        lineNumbers_->isChecked() != p.lineNumbers;
    const bool parser = lineLengthLimit_->value() != p.lineLengthLimit ||
                        tolerance_->value() != p.lineLengthTolerance ||
                        maxConsecError_->value() != p.maxConsecError || dictionariesChanged();
    const bool mandatory =
        mandatoryPath_ != p.mandatoryFilename || checkMandatory_->isChecked() != p.checkMandatoryItems;

    p.reuseWindow = reuseWindow_->isChecked();
    p.textOnButtons = textOnButtons_->isChecked();
    p.saveBackupFile = saveBackup_->isChecked();
    p.lineLengthLimit = lineLengthLimit_->value();
    p.lineLengthTolerance = tolerance_->value();
    p.maxConsecError = maxConsecError_->value();
    p.mandatoryFilename = mandatoryPath_;
    p.checkMandatoryItems = checkMandatory_->isChecked();
    p.templateFilename = templatePath_;
    p.startWithTemplate = startWithTemplate_->isChecked();
    p.lineNumbers = lineNumbers_->isChecked();
    p.contactName = contactName_->text();
    p.contactAddress = contactAddress_->text();
    p.contactEmail = contactEmail_->text();
    p.contactPhone = contactPhone_->text();
    p.writeDialogValues();
    for (DictionaryRow& row : dictionaryRows_)
        row.applied = row.box->isChecked();
    if (dictionaries_)
        dictionaries_->save();

    if (editor)
        emit editorPrefsChanged();
    if (mainWindow)
        emit mainWinPrefsChanged();
    if (parser)
        emit parserPrefsChanged();
    if (mandatory)
        emit mandatoryPrefsChanged();
    emit prefsChanged();
}

void QcbsPrefsDialog::defaultPressed()
{
    showValues(QcbsPreferences());
    for (const DictionaryRow& row : dictionaryRows_)
        row.box->setChecked(true);
}

void QcbsPrefsDialog::reject()
{
    for (const DictionaryRow& row : dictionaryRows_)
        row.box->setChecked(row.applied);
    QDialog::reject();
}
