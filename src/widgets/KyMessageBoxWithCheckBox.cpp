#include "KyMessageBoxWithCheckBox.h"

#include <QCheckBox>
#include <QChildEvent>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QUrl>

#include <algorithm>

namespace Kyte {

static const QString SETTINGS_GROUP = QStringLiteral("dialog");
static const QString SETTINGS_ARRAY = QStringLiteral("checked");
static const QString NAME_KEY = QStringLiteral("name");
static const QString CHECKED_KEY = QStringLiteral("checked");

/** One cell of a grid, or several. */
struct GridCell
{
    int row = 0;
    int column = 0;
    int rowSpan = 0;
    int columnSpan = 0;
};

static GridCell cellOf(const QGridLayout *grid, int index)
{
    GridCell cell;
    grid->getItemPosition(index, &cell.row, &cell.column, &cell.rowSpan, &cell.columnSpan);
    return cell;
}

/** The numbers that elements of \a array have: a damaged file may claim any size. */
static QList<int> presentElements(QSettings *settings, const QString &array)
{
    const int size = settings->beginReadArray(array);
    settings->endArray();
    settings->beginGroup(array);
    const QStringList groups = settings->childGroups();
    settings->endGroup();
    QList<int> elements;
    for (const QString &group : groups) {
        const int number = group.toInt(); // counted from 1 in the file
        if (number >= 1 && number <= size)
            elements.append(number - 1);
    }
    std::sort(elements.begin(), elements.end());
    return elements;
}

KyMessageBoxWithCheckBox::KyMessageBoxWithCheckBox(QWidget *parent)
    : QMessageBox(parent)
{
    setup();
}

KyMessageBoxWithCheckBox::KyMessageBoxWithCheckBox(QMessageBox::Icon icon,
                                                   const QString &title,
                                                   const QString &text,
                                                   QMessageBox::StandardButtons buttons,
                                                   QWidget *parent,
                                                   Qt::WindowFlags flags)
    : QMessageBox(icon, title, text, buttons, parent, flags)
{
    setup();
}

int KyMessageBoxWithCheckBox::exec()
{
    if (m_checkBox)
        m_checkBox->setChecked(checkedFromSettings());
    if (!isChecked())
        return QMessageBox::exec();

    const QPointer<KyMessageBoxWithCheckBox> guard(this);
    close();
    if (guard) {
        setResult(QMessageBox::Ok); // after closing, which sets the result of the escape key
        if (testAttribute(Qt::WA_DeleteOnClose)) // a box that was never shown refuses to close
            deleteLater();
    }
    return QMessageBox::Ok;
}

void KyMessageBoxWithCheckBox::setSettings(QSettings *settings)
{
    m_settings = settings;
}

void KyMessageBoxWithCheckBox::setText(const QString &text)
{
    QMessageBox::setText(text);
}

QString KyMessageBoxWithCheckBox::checkBoxText() const
{
    return m_checkBox ? m_checkBox->text() : QString();
}

void KyMessageBoxWithCheckBox::setCheckBoxText(const QString &text)
{
    if (m_checkBox)
        m_checkBox->setText(text);
}

bool KyMessageBoxWithCheckBox::isCheckBoxVisible() const
{
    return m_checkBox && !m_checkBox->isHidden();
}

void KyMessageBoxWithCheckBox::setCheckBoxVisible(bool visible)
{
    if (m_checkBox)
        m_checkBox->setVisible(visible);
}

bool KyMessageBoxWithCheckBox::isChecked() const
{
    return m_checkBox && m_checkBox->isChecked();
}

QMap<QString, bool> KyMessageBoxWithCheckBox::readAllCheckedFromSettings()
{
    QMap<QString, bool> all;
    if (!m_settings)
        return all;
    m_settings->beginGroup(SETTINGS_GROUP);
    const QList<int> elements = presentElements(m_settings, SETTINGS_ARRAY);
    m_settings->beginReadArray(SETTINGS_ARRAY);
    for (int element : elements) {
        m_settings->setArrayIndex(element);
        const QByteArray name = m_settings->value(NAME_KEY).toByteArray();
        if (!name.isEmpty())
            all.insert(QUrl::fromPercentEncoding(name), m_settings->value(CHECKED_KEY, false).toBool());
    }
    m_settings->endArray();
    m_settings->endGroup();
    return all;
}

void KyMessageBoxWithCheckBox::writeCheckedToSettings(const QMap<QString, bool> &checked)
{
    if (!m_settings)
        return;
    m_settings->beginGroup(SETTINGS_GROUP);
    m_settings->remove(SETTINGS_ARRAY);
    m_settings->beginWriteArray(SETTINGS_ARRAY);
    int element = 0;
    for (auto entry = checked.cbegin(); entry != checked.cend(); ++entry) {
        if (entry.key().isEmpty())
            continue;
        m_settings->setArrayIndex(element++);
        // Encoded, a message is plain ASCII without anything that has a meaning in an INI file.
        m_settings->setValue(NAME_KEY, QUrl::toPercentEncoding(entry.key()));
        m_settings->setValue(CHECKED_KEY, entry.value());
    }
    m_settings->endArray();
    m_settings->endGroup();
    m_settings->sync();
}

bool KyMessageBoxWithCheckBox::checkedFromSettings()
{
    return readAllCheckedFromSettings().value(text(), false);
}

void KyMessageBoxWithCheckBox::setCheckedToSettings(bool checked)
{
    QMap<QString, bool> all = readAllCheckedFromSettings();
    if (checked)
        all.insert(text(), true);
    else
        all.remove(text());
    writeCheckedToSettings(all);
}

/** A new icon, informative or detailed text makes the message box lay itself out anew, without our check box.
 */
void KyMessageBoxWithCheckBox::childEvent(QChildEvent *event)
{
    QMessageBox::childEvent(event);
    if (event->added() && event->child() == layout())
        placeCheckBox();
}

void KyMessageBoxWithCheckBox::showEvent(QShowEvent *event)
{
    QMessageBox::showEvent(event); // adds the OK button where there is none
    makeCheckBoxLastTab();
}

void KyMessageBoxWithCheckBox::onFinished(int result)
{
    if (result == QMessageBox::Ok)
        setCheckedToSettings(isChecked());
}

void KyMessageBoxWithCheckBox::setup()
{
    m_checkBox = new QCheckBox(tr("Do not show this message again."), this);
    m_checkBox->setObjectName(QStringLiteral("ky_msgbox_checkbox"));
    placeCheckBox();
    m_checkBox->setChecked(checkedFromSettings());
    connect(this, SIGNAL(finished(int)), this, SLOT(onFinished(int)));
}

/**
 * Puts the check box into the row of the buttons, which is the third, and the buttons and what is below them
 * one row further down. The buttons are looked for, because the icon and the texts change their index in the
 * layout.
 */
void KyMessageBoxWithCheckBox::placeCheckBox()
{
    auto *grid = qobject_cast<QGridLayout *>(layout());
    auto *buttonBox = findChild<QDialogButtonBox *>(QString(), Qt::FindDirectChildrenOnly);
    if (!m_checkBox || !grid || grid->indexOf(m_checkBox) >= 0 || grid->indexOf(buttonBox) < 0)
        return;

    const int row = cellOf(grid, grid->indexOf(buttonBox)).row;
    const int columnCount = grid->columnCount();
    for (int i = grid->count() - 1; i >= 0; --i) {
        const GridCell cell = cellOf(grid, i);
        if (cell.row < row)
            continue;
        QLayoutItem *item = grid->takeAt(i); // an item that is added without being taken is deleted twice
        grid->addItem(item, cell.row + 1, cell.column, cell.rowSpan, columnCount - cell.column);
    }
    grid->addWidget(m_checkBox, row, 1, 1, columnCount - 1);
}

/** Tab goes through the buttons first, so that they have the focus in the beginning, as in any message box.
 */
void KyMessageBoxWithCheckBox::makeCheckBoxLastTab()
{
    const auto *buttonBox = findChild<QDialogButtonBox *>(QString(), Qt::FindDirectChildrenOnly);
    QWidget *lastButton = nullptr;
    for (QWidget *widget = nextInFocusChain(); widget != this; widget = widget->nextInFocusChain()) {
        if (buttonBox && buttonBox->isAncestorOf(widget))
            lastButton = widget;
    }
    if (lastButton && m_checkBox)
        setTabOrder(lastButton, m_checkBox);
}

} // namespace Kyte
