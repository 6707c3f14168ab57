#include "widgets/values/StateIndicatorWidget.h"

#include "definitions/DashboardSignalParser.h"
#include "widgets/drawing/SizedFont.h"

#include <QComboBox>
#include <QFormLayout>
#include <QPainter>

#include <algorithm>
#include <initializer_list>
#include <utility>

namespace {

constexpr int kPadding = 8;
constexpr int kCaptionGap = 6;
constexpr int kMinimumLampHeight = 30;
constexpr int kPointSize = 14;

constexpr QLatin1String kGroupKey("groupId");

bool containsAny(const QString& text, std::initializer_list<QLatin1String> words)
{
    return std::any_of(words.begin(), words.end(), [&](QLatin1String word) { return text.contains(word); });
}

void drawCentred(QPainter& painter, const QRect& area, const QString& text)
{
    painter.drawText(area, Qt::AlignCenter,
                     painter.fontMetrics().elidedText(text, Qt::ElideRight, area.width()));
}

} // namespace

StateIndicatorWidget::StateIndicatorWidget(QWidget* parent)
    : WidgetWithSettings(parent)
{
    setMinimumSize(120, 60);
}

void StateIndicatorWidget::setGroupId(const QString& id)
{
    if (id == m_groupId)
        return;
    const QString trimmed = id.trimmed();
    if (trimmed.compare(m_groupId, Qt::CaseInsensitive) != 0) { // as states find their group
        m_stateId.clear();
        m_stateLabel.clear();
    }
    m_groupId = trimmed;
    refreshGroupDisplayFromParser();
}

void StateIndicatorWidget::refreshGroupDisplayFromParser()
{
    m_groupLabel = m_groupId;
    if (gSignalParser) {
        if (const auto group = gSignalParser->findStateGroup(m_groupId))
            m_groupLabel = group->label;
    }
    update();
}

void StateIndicatorWidget::setStateId(const QString& stateId, const QString& label)
{
    m_stateId = stateId.trimmed();
    m_stateLabel = label.isEmpty() ? stateId : label;
    update();
}

void StateIndicatorWidget::showState(const QString& groupId, const QString& stateId, const QString& label)
{
    if (groupId.compare(m_groupId, Qt::CaseInsensitive) == 0)
        setStateId(stateId, label);
}

void StateIndicatorWidget::definitionsChanged() { refreshGroupDisplayFromParser(); }

QColor StateIndicatorWidget::colorForState(const QString& stateId) const
{
    const QString name = stateId.toUpper();
    if (containsAny(name, {QLatin1String("STOP"), QLatin1String("OUT"), QLatin1String("FAIL")}))
        return {200, 60, 60};
    if (containsAny(name, {QLatin1String("GO"), QLatin1String("IN"), QLatin1String("PASS")}))
        return {60, 170, 80};
    if (name.contains(QLatin1String("PAUSE")))
        return {230, 170, 40};
    return {90, 120, 160};
}

QString StateIndicatorWidget::typeName() const { return QStringLiteral("StateIndicator"); }

bool StateIndicatorWidget::usesSignalSelection() const { return false; }

void StateIndicatorWidget::loadConfig(const QJsonObject& config)
{
    if (config.contains(kGroupKey))
        setGroupId(config.value(kGroupKey).toString());
    WidgetWithSettings::loadConfig(config);
}

QJsonObject StateIndicatorWidget::saveConfig() const
{
    QJsonObject config = WidgetWithSettings::saveConfig();
    config.insert(kGroupKey, m_groupId);
    return config;
}

void StateIndicatorWidget::buildConfigUI(QFormLayout* form, QWidget* parent)
{
    m_groupEditor = new QComboBox(parent);
    describeEditor(m_groupEditor, tr("State group"), tr("The group of states that the lamp follows"));
    // A label of any length must not widen the dialog beyond the screen.
    m_groupEditor->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_groupEditor->setMinimumContentsLength(24);
    QStringList ids = gSignalParser ? gSignalParser->stateGroupIds() : QStringList();
    ids.removeDuplicates();
    for (const QString& id : std::as_const(ids)) {
        const auto group = gSignalParser->findStateGroup(id);
        m_groupEditor->addItem(QStringLiteral("%1 (%2)").arg(group ? group->label : id, id), id);
    }
    // With a group that the catalogue does not know nothing is selected, so that OK does not lose it.
    if (!m_groupId.isEmpty())
        m_groupEditor->setCurrentIndex(m_groupEditor->findData(m_groupId));
    form->addRow(tr("State Group:"), m_groupEditor);
    WidgetWithSettings::buildConfigUI(form, parent);
}

void StateIndicatorWidget::applyConfigUI()
{
    if (m_groupEditor && m_groupEditor->currentIndex() >= 0)
        setGroupId(m_groupEditor->currentData().toString());
    WidgetWithSettings::applyConfigUI();
}

void StateIndicatorWidget::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(rect(), palette().color(QPalette::Window));
    painter.setFont(sizedFont(font(), kPointSize));
    const int fontHeight = painter.fontMetrics().height();
    const int innerWidth = width() - 2 * kPadding;

    painter.setPen(Qt::black);
    drawCentred(painter, QRect(kPadding, kPadding, innerWidth, fontHeight),
                m_groupLabel.isEmpty() ? tr("State") : m_groupLabel);

    const int height = std::max(kMinimumLampHeight, this->height() - fontHeight - 2 * kPadding);
    const QRect lamp(kPadding, kPadding + fontHeight + kCaptionGap, innerWidth, height - kCaptionGap);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colorForState(m_stateId));
    painter.drawRoundedRect(lamp, m_corner, m_corner);

    painter.setPen(Qt::white);
    const QString text = !m_stateLabel.isEmpty() ? m_stateLabel : m_stateId;
    drawCentred(painter, lamp, text.isEmpty() ? QStringLiteral("—") : text);
}
