// The view of a form that the elastic layout works on: the form's size and state, and its
// controls addressed by index, each property of which may be missing on a given control.
#pragma once

#include <stdexcept>
#include <string>

namespace zorvik {

/// A control lacks the property asked for (a line has no font, a button no right margin), or
/// the index names no control.
class PropertyMissing : public std::runtime_error {
public:
    explicit PropertyMissing(const std::string& what) : std::runtime_error(what) {}
};

/// A control or the form refused the value given (a negative width, a font size of 0, a window
/// that cannot be sized in its present state).
class PropertyInvalid : public std::runtime_error {
public:
    explicit PropertyInvalid(const std::string& what) : std::runtime_error(what) {}
};

/// Properties of a control that the elastic layout reads and writes. Positions and sizes are
/// in twips; the font size is in points.
enum class ElasticProperty { Top, Left, Height, Width, FontSize, RightMargin, X1, Y1, X2, Y2 };

/// Window states of a form, numbered as the layout expects them.
enum class ElasticWindowState { Normal = 0, Minimized = 1, Maximized = 2 };

/// A form managed by class_Elastic. Every getter and setter may throw (PropertyMissing,
/// PropertyInvalid or any other std::exception); the layout skips the failed step and goes on.
class ElasticForm {
public:
    virtual ~ElasticForm() = default;

    /// Outer size of the form, caption and borders included, in twips.
    virtual double formHeight() const = 0;
    virtual double formWidth() const = 0;
    virtual void setFormHeight(double twips) = 0;
    virtual void setFormWidth(double twips) = 0;

    virtual ElasticWindowState windowState() const = 0;

    /// Size of the screen that shows the form, in twips.
    virtual double screenHeight() const = 0;
    virtual double screenWidth() const = 0;

    /// Whether the form keeps its picture between paints.
    virtual bool autoRedraw() const = 0;
    virtual void setAutoRedraw(bool on) = 0;

    /// Number of controls on the form; their indices run from 0 to controlCount() - 1 and keep
    /// their order for the life of the form.
    virtual int controlCount() const = 0;
    virtual bool isLine(int index) const = 0;
    virtual double property(int index, ElasticProperty which) const = 0;
    virtual void setProperty(int index, ElasticProperty which, double value) = 0;
};

} // namespace zorvik
