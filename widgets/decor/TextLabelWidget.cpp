#include "widgets/decor/TextLabelWidget.h"

#include "definitions/numbers/FileNumbers.h"
#include "widgets/ConfigEditors.h"
#include "widgets/decor/NamedColors.h"
#include "widgets/drawing/SizedFont.h"

#include <QLineEdit>
#include <QPainter>

namespace {

constexpr int kMaxPointSize = 500;
constexpr int kMinOfferedPointSize = 6;
constexpr int kMaxOfferedPointSize = 72;
constexpr int kMostDrawn = 1'000; ///< characters: a text is laid out whole before it is clipped
constexpr int kSideInset = 2;
constexpr int kTopInset = 1;

constexpr QLatin1String kTextKey("text");
constexpr QLatin1String kColorKey("color");
constexpr QLatin1String kPointKey("point");
constexpr QLatin1String kBoldKey("bold");
constexpr QLatin1String kAlignKey("align");
constexpr QLatin1String kLeft("Left");
constexpr QLatin1String kCenter("Center");
constexpr QLatin1String kRight("Right");

Qt::Alignment namedAlignment(const QString& name)
{
    const auto across = name == kLeft ? Qt::AlignLeft : name == kRight ? Qt::AlignRight : Qt::AlignHCenter;
    return across | Qt::AlignVCenter;
}

QString alignmentName(Qt::Alignment alignment)
{
    return alignment & Qt::AlignLeft ? kLeft : alignment & Qt::AlignRight ? kRight : kCenter;
}

} // namespace

TextLabelWidget::TextLabelWidget(QWidget* parent)
    : DashboardWidget(parent)
    , m_text(tr("Label"))
{
    setMinimumSize(40, 20);
}

QString TextLabelWidget::typeName() const { return QStringLiteral("TextLabel"); }

bool TextLabelWidget::usesSignalSelection() const { return false; }

void TextLabelWidget::loadConfig(const QJsonObject& config)
{
    if (config.contains(kTextKey))
        m_text = config.value(kTextKey).toString();
    if (config.contains(kColorKey))
        m_color = namedColor(config.value(kColorKey).toString());
    m_pointSize = jsonInt(config.value(kPointKey), 1, kMaxPointSize, m_pointSize);
    m_bold = config.value(kBoldKey).toBool(m_bold);
    if (config.contains(kAlignKey))
        m_alignment = namedAlignment(config.value(kAlignKey).toString());
    update();
}

QJsonObject TextLabelWidget::saveConfig() const
{
    return {{kTextKey, m_text},
            {kColorKey, colorName(m_color)},
            {kPointKey, m_pointSize},
            {kBoldKey, m_bold},
            {kAlignKey, alignmentName(m_alignment)}};
}

void TextLabelWidget::buildConfigUI(QFormLayout* form, QWidget* parent)
{
    m_textEditor = addEditor(form, tr("Text:"), new QLineEdit(m_text, parent), tr("What the label says"));
    // With a colour that is not offered nothing is selected, so that OK does not lose it.
    m_colorEditor = addEditor(form, tr("Color:"), newChoice(textColorNames(), QString(), parent),
                              tr("The colour of the text"));
    m_colorEditor->setCurrentIndex(m_colorEditor->findText(colorName(m_color)));
    m_pointSizeEditor = addEditor(
        form, tr("Size:"), newIntEditor(m_pointSize, kMinOfferedPointSize, kMaxOfferedPointSize, parent),
        tr("The size of the text, in points"));
    m_boldEditor = addCheckBox(form, tr("Bold"), m_bold, tr("Draw the text in bold"), parent);
    m_alignmentEditor =
        addEditor(form, tr("Align:"), newChoice({kLeft, kCenter, kRight}, alignmentName(m_alignment), parent),
                  tr("Where the text stands in the widget"));
}

void TextLabelWidget::applyConfigUI()
{
    if (m_textEditor)
        m_text = m_textEditor->text();
    if (m_colorEditor && m_colorEditor->currentIndex() >= 0)
        m_color = namedColor(m_colorEditor->currentText());
    if (m_pointSizeEditor)
        m_pointSize = editedValue(m_pointSizeEditor, m_pointSize);
    if (m_boldEditor)
        m_bold = m_boldEditor->isChecked();
    if (m_alignmentEditor)
        m_alignment = namedAlignment(m_alignmentEditor->currentText());
    update();
}

void TextLabelWidget::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::TextAntialiasing);
    painter.fillRect(rect(), palette().color(QPalette::Window));
    QFont font = sizedFont(this->font(), m_pointSize);
    font.setBold(m_bold);
    painter.setFont(font);
    painter.setPen(m_color);
    painter.drawText(rect().adjusted(kSideInset, kTopInset, -kSideInset, -kTopInset),
                     int(m_alignment) | Qt::TextSingleLine, m_text.left(kMostDrawn));
}
