#include "KyCommonInputNameDialog.h"

#include "KyInputNameChecker.h"
#include "ui_KyCommonInputNameDialog.h"

namespace Kyte {

KyCommonInputNameDialog::KyCommonInputNameDialog(QWidget *parent)
    : QDialog(parent)
    , m_form(std::make_unique<Ui::KyCommonInputNameDialog>())
{
    setup();
}

KyCommonInputNameDialog::KyCommonInputNameDialog(QWidget *parent,
                                                 const QString &title,
                                                 const QString &label,
                                                 const QString &initialText,
                                                 KyInputNameChecker *checker,
                                                 bool renameMode)
    : QDialog(parent)
    , m_form(std::make_unique<Ui::KyCommonInputNameDialog>())
    , m_renameMode(renameMode)
{
    setup();
    setTitle(title);
    setLabel(label);
    setText(initialText);
    setInitialText(initialText);
    setInputChecker(checker);
}

KyCommonInputNameDialog::~KyCommonInputNameDialog() = default;

QString KyCommonInputNameDialog::title() const
{
    return windowTitle();
}

void KyCommonInputNameDialog::setTitle(const QString &title)
{
    setWindowTitle(title);
}

QString KyCommonInputNameDialog::label() const
{
    return m_form->label_header->text();
}

void KyCommonInputNameDialog::setLabel(const QString &label)
{
    m_form->label_header->setText(label);
    // Not a buddy of the line edit: that would take an ampersand in the label for a shortcut and not show it.
    m_form->lineEdit->setAccessibleName(label);
}

QString KyCommonInputNameDialog::text() const
{
    return m_form->lineEdit->text();
}

void KyCommonInputNameDialog::setText(const QString &text)
{
    m_form->lineEdit->setText(text);
}

QString KyCommonInputNameDialog::initialText() const
{
    return m_initialText;
}

void KyCommonInputNameDialog::setInitialText(const QString &text)
{
    m_initialText = text;
}

KyInputNameChecker *KyCommonInputNameDialog::inputChecker() const
{
    return m_inputChecker;
}

void KyCommonInputNameDialog::setInputChecker(KyInputNameChecker *checker)
{
    if (checker != m_inputChecker)
        delete m_inputChecker;
    m_inputChecker = checker;
    if (checker)
        checker->setParent(this);
    m_form->lineEdit->setValidator(checker ? checker->validator() : nullptr);
}

int KyCommonInputNameDialog::maxTextLength() const
{
    return m_maxTextLength;
}

void KyCommonInputNameDialog::setMaxTextLength(int length)
{
    m_maxTextLength = length;
    m_form->lineEdit->setMaxLength(length);
}

bool KyCommonInputNameDialog::renameMode() const
{
    return m_renameMode;
}

void KyCommonInputNameDialog::setRenameMode(bool enabled)
{
    m_renameMode = enabled;
}

void KyCommonInputNameDialog::onTextEdited(const QString &text)
{
    showWarning(text.isEmpty() ? tr("Please input the characters.") : QString());
    m_form->pushButton_ok->setEnabled(!text.isEmpty());
}

void KyCommonInputNameDialog::onAcceptButtonClicked()
{
    const bool isUnchanged = m_renameMode && text() == m_initialText;
    if (!isUnchanged && m_inputChecker && !m_inputChecker->checkText(text())) {
        showWarning(m_inputChecker ? m_inputChecker->errorMessage() : QString());
        return;
    }
    accept();
}

void KyCommonInputNameDialog::onRejectButtonClicked()
{
    reject();
}

void KyCommonInputNameDialog::setup()
{
    m_form->setupUi(this);
    setWindowFlags(windowFlags() & ~Qt::WindowContextHelpButtonHint);
    setMaxTextLength(m_maxTextLength);
    connect(m_form->lineEdit, SIGNAL(textEdited(QString)), this, SLOT(onTextEdited(QString)));
    connect(m_form->pushButton_ok, SIGNAL(clicked()), this, SLOT(onAcceptButtonClicked()));
    connect(m_form->pushButton_cancel, SIGNAL(clicked()), this, SLOT(onRejectButtonClicked()));
}

/** What the label shows, a screen reader tells of the line edit. */
void KyCommonInputNameDialog::showWarning(const QString &warning)
{
    m_form->label_warrning->setText(warning);
    m_form->lineEdit->setAccessibleDescription(warning);
    const int neededHeight = layout()->totalHeightForWidth(width()); // a long warning wraps
    if (neededHeight > height())
        resize(width(), neededHeight);
}

} // namespace Kyte
