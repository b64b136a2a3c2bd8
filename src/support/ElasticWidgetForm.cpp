// The Qt side of the elastic layout: maps a form and its marked widgets to twips and points.
#include "support/ElasticWidgetForm.h"

#include "support/LineControl.h"
#include "support/TextFit.h"
#include "support/Twips.h"

#include <QScreen>
#include <QTextEdit>
#include <algorithm>
#include <cmath>
#include <string>

namespace zorvik {

namespace {

// Pixel values the layout may set: anything a screen could show, with room to spare.
constexpr double kMaxPixels = 1 << 24;

int pixelsOf(double twips) {
    const double pixels = twips / kTwipsPerPixel;
    if (!std::isfinite(pixels) || std::abs(pixels) > kMaxPixels)
        throw PropertyInvalid("Invalid property value");
    return twipsToPixels(twips);
}

int sizeInPixels(double twips) {
    const int pixels = pixelsOf(twips);
    if (pixels < 0)
        throw PropertyInvalid("Invalid property value");
    return pixels;
}

double twipsOf(int pixels) {
    return pixelsToTwips(pixels);
}

constexpr const char* kTopProperty = "elasticTop";
constexpr const char* kLeftProperty = "elasticLeft";

// The twips of a control's top or left edge as last set, while the control is still at the
// pixel they give; its pixel position otherwise.
double edgeTwips(const QWidget& w, const char* property, int pixels) {
    const QVariant set = w.property(property);
    if (set.isValid() && pixelsOf(set.toDouble()) == pixels)
        return set.toDouble();
    return twipsOf(pixels);
}

// A text box with a fixed wrap width has a right margin: the width of its lines of text.
// Every other widget has none.
QTextEdit* withRightMargin(QWidget& widget) {
    auto* edit = qobject_cast<QTextEdit*>(&widget);
    if (edit && edit->lineWrapMode() == QTextEdit::FixedPixelWidth)
        return edit;
    return nullptr;
}

[[noreturn]] void missing(ElasticProperty which) {
    throw PropertyMissing("Object doesn't support this property (" +
                          std::to_string(static_cast<int>(which)) + ")");
}

double lineProperty(const LineControl& line, ElasticProperty which) {
    switch (which) {
    case ElasticProperty::X1:
        return line.X1();
    case ElasticProperty::Y1:
        return line.Y1();
    case ElasticProperty::X2:
        return line.X2();
    case ElasticProperty::Y2:
        return line.Y2();
    default:
        missing(which);
    }
}

void setLineProperty(LineControl& line, ElasticProperty which, double twips) {
    pixelsOf(twips); // refuses values far off any screen
    switch (which) {
    case ElasticProperty::X1:
        return line.setX1(twips);
    case ElasticProperty::Y1:
        return line.setY1(twips);
    case ElasticProperty::X2:
        return line.setX2(twips);
    case ElasticProperty::Y2:
        return line.setY2(twips);
    default:
        missing(which);
    }
}

} // namespace

ElasticWidgetForm::ElasticWidgetForm(QWidget* form) : m_form(form) {}

QWidget& ElasticWidgetForm::form() const {
    if (!m_form)
        throw PropertyMissing("The form no longer exists");
    return *m_form;
}

void ElasticWidgetForm::collectControls() const {
    if (!m_form)
        return;
    // findChildren walks the widget tree depth first in the order the children were added,
    // which for controls created straight on the form is their creation order.
    const auto found = m_form->findChildren<QWidget*>();
    for (QWidget* widget : found) {
        if (!widget->property(kControlProperty).toBool())
            continue;
        const bool known =
            std::any_of(m_controls.begin(), m_controls.end(),
                        [widget](const QPointer<QWidget>& c) { return c == widget; });
        if (!known)
            m_controls.emplace_back(widget);
    }
}

QList<QWidget*> ElasticWidgetForm::controls() const {
    collectControls();
    QList<QWidget*> list;
    for (const auto& control : m_controls)
        list.append(control.data());
    return list;
}

QWidget& ElasticWidgetForm::control(int index) const {
    if (index >= 0 && static_cast<std::size_t>(index) >= m_controls.size())
        collectControls();
    if (index < 0 || static_cast<std::size_t>(index) >= m_controls.size() ||
        !m_controls[static_cast<std::size_t>(index)])
        throw PropertyMissing("Control array element " + std::to_string(index) + " doesn't exist");
    return *m_controls[static_cast<std::size_t>(index)];
}

// The form's outer size is its client area plus the caption and borders. Qt learns a window's
// real frame only after the window system has shown it, yet the main window hands itself to
// the layout before it is shown. So the frame is counted as the fixed allowance the layout's
// height factor takes off again (400 twips in height, none in width): the design size and
// every later size are then measured alike, and the controls fill the client area in exact
// proportion whatever frame the desktop draws.
double ElasticWidgetForm::formHeight() const {
    return twipsOf(form().height()) + kFrameAllowanceTwips;
}
double ElasticWidgetForm::formWidth() const {
    return twipsOf(form().width());
}

// A maximised or minimised window keeps the size the desktop gives it.
void ElasticWidgetForm::setFormHeight(double twips) {
    QWidget& w = form();
    if (w.isMaximized() || w.isMinimized())
        throw PropertyInvalid("A form can't be sized while minimized or maximized");
    w.resize(w.width(), std::max(0, pixelsOf(twips - kFrameAllowanceTwips)));
}

void ElasticWidgetForm::setFormWidth(double twips) {
    QWidget& w = form();
    if (w.isMaximized() || w.isMinimized())
        throw PropertyInvalid("A form can't be sized while minimized or maximized");
    w.resize(sizeInPixels(twips), w.height());
}

ElasticWindowState ElasticWidgetForm::windowState() const {
    const QWidget& w = form();
    if (w.isMinimized())
        return ElasticWindowState::Minimized;
    if (w.isMaximized())
        return ElasticWindowState::Maximized;
    return ElasticWindowState::Normal;
}

double ElasticWidgetForm::screenHeight() const {
    return twipsOf(form().screen()->geometry().height());
}
double ElasticWidgetForm::screenWidth() const {
    return twipsOf(form().screen()->geometry().width());
}

// Qt widgets always paint from a kept back buffer, so a form keeps its picture whatever this
// says; the setting is recorded on the form for anything that wants to know it.
bool ElasticWidgetForm::autoRedraw() const {
    return form().property(kAutoRedrawProperty).toBool();
}
void ElasticWidgetForm::setAutoRedraw(bool on) {
    form().setProperty(kAutoRedrawProperty, on);
}

void ElasticWidgetForm::fitTexts() {
    collectControls();
    for (const QPointer<QWidget>& w : m_controls) {
        if (!w || qobject_cast<LineControl*>(w.data()))
            continue;
        const QVariant given = w->property(kFontSizeProperty);
        if (given.isValid())
            TextFit::fitFont(*w, given.toDouble());
    }
}

int ElasticWidgetForm::controlCount() const {
    collectControls();
    return static_cast<int>(m_controls.size());
}

bool ElasticWidgetForm::isLine(int index) const {
    return qobject_cast<LineControl*>(&control(index)) != nullptr;
}

double ElasticWidgetForm::property(int index, ElasticProperty which) const {
    QWidget& w = control(index);
    if (auto* line = qobject_cast<LineControl*>(&w))
        return lineProperty(*line, which);
    switch (which) {
    case ElasticProperty::Top:
        return twipsOf(w.y());
    case ElasticProperty::Left:
        return twipsOf(w.x());
    case ElasticProperty::Height:
        return twipsOf(w.height());
    case ElasticProperty::Width:
        return twipsOf(w.width());
    case ElasticProperty::FontSize: {
        // A font sized in pixels has no point size to scale.
        const double points = w.font().pointSizeF();
        if (points <= 0)
            missing(which);
        // The size the layout gave, which may be larger than the type shown (TextFit.h).
        const QVariant given = w.property(kFontSizeProperty);
        return given.isValid() ? given.toDouble() : points;
    }
    case ElasticProperty::RightMargin:
        if (QTextEdit* edit = withRightMargin(w))
            return twipsOf(edit->lineWrapColumnOrWidth());
        missing(which);
    default:
        missing(which);
    }
}

void ElasticWidgetForm::setProperty(int index, ElasticProperty which, double value) {
    QWidget& w = control(index);
    if (auto* line = qobject_cast<LineControl*>(&w))
        return setLineProperty(*line, which, value);
    switch (which) {
    // A control's edges are rounded to whole pixels rather than its place and size each on
    // their own, so controls that meet or stand apart in twips never overlap by a pixel.
    case ElasticProperty::Top:
        w.setProperty(kTopProperty, value);
        return w.move(w.x(), pixelsOf(value));
    case ElasticProperty::Left:
        w.setProperty(kLeftProperty, value);
        return w.move(pixelsOf(value), w.y());
    case ElasticProperty::Height: {
        sizeInPixels(value);
        const double top = edgeTwips(w, kTopProperty, w.y());
        return w.resize(w.width(), std::max(0, pixelsOf(top + value) - pixelsOf(top)));
    }
    case ElasticProperty::Width: {
        sizeInPixels(value);
        const double left = edgeTwips(w, kLeftProperty, w.x());
        return w.resize(std::max(0, pixelsOf(left + value) - pixelsOf(left)), w.height());
    }
    case ElasticProperty::FontSize: {
        if (w.font().pointSizeF() <= 0)
            missing(which);
        if (!(value > 0 && value < 1000))
            throw PropertyInvalid("Invalid property value");
        w.setProperty(kFontSizeProperty, value);
        TextFit::fitFont(w, value);
        return;
    }
    case ElasticProperty::RightMargin:
        if (QTextEdit* edit = withRightMargin(w))
            return edit->setLineWrapColumnOrWidth(sizeInPixels(value));
        missing(which);
    default:
        missing(which);
    }
}

} // namespace zorvik
