// Presents a Qt form to the elastic layout: the form's size, its window state and screen,
// and the widgets marked as elastic controls with their geometry in twips and font in points.
#pragma once

#include "support/ElasticForm.h"

#include <QList>
#include <QPointer>
#include <QWidget>
#include <vector>

namespace zorvik {

class ElasticWidgetForm : public ElasticForm {
public:
    /// Dynamic property that makes a descendant widget of the form one of its controls.
    static constexpr const char* kControlProperty = "elasticControl";
    /// Dynamic property of the form that records its AutoRedraw setting.
    static constexpr const char* kAutoRedrawProperty = "AutoRedraw";
    /// Dynamic property of a control holding the font size the layout last gave it; the type
    /// shown may be smaller where the control's texts would not fit (TextFit.h).
    static constexpr const char* kFontSizeProperty = "elasticFontSize";
    /// Twips the form's outer height counts for its caption and borders.
    static constexpr double kFrameAllowanceTwips = 400;

    explicit ElasticWidgetForm(QWidget* form);

    /// The form's controls in index order; a control deleted since it was first seen leaves a
    /// null entry, so later indices do not move.
    QList<QWidget*> controls() const;

    /// Outer size of the form: its client height plus kFrameAllowanceTwips for the caption
    /// and borders, and its client width.
    double formHeight() const override;
    double formWidth() const override;
    void setFormHeight(double twips) override;
    void setFormWidth(double twips) override;
    ElasticWindowState windowState() const override;
    double screenHeight() const override;
    double screenWidth() const override;
    bool autoRedraw() const override;
    void setAutoRedraw(bool on) override;
    int controlCount() const override;
    bool isLine(int index) const override;
    double property(int index, ElasticProperty which) const override;
    void setProperty(int index, ElasticProperty which, double value) override;

    /// Shows every control's texts in the largest type, up to the size the layout gave it, at
    /// which they fit its rectangle. Setting a control's font size fits that control at once;
    /// a frame's caption also depends on the places of the controls inside it, so the main
    /// window runs this once the whole layout has been placed.
    void fitTexts();

private:
    QWidget& form() const;
    QWidget& control(int index) const;
    void collectControls() const;

    QPointer<QWidget> m_form;
    // Controls in the order they were first seen. The list only ever grows: widgets marked
    // later are appended, deleted ones stay as null entries.
    mutable std::vector<QPointer<QWidget>> m_controls;
};

} // namespace zorvik
