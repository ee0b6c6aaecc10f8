#pragma once

#include "platform/text/Colour.h"

#include <QLabel>

#include <optional>

namespace ombrix {

/// A label that shows a value which changes. A screen reader is told what the value means; a
/// reading that failed shows as no value; a given colour stays readable on dark palettes.
class ValueLabel : public QLabel {
    Q_OBJECT

  public:
    /// @param meaning what the value is, for those who cannot see where it stands
    ValueLabel(const QString& objectName, QString meaning, QWidget* parent);

    void ShowValue(const QString& text);
    /// No value, with the reason in the tool tip.
    void ShowFailure(const QString& reason);
    void ShowInColour(Colour colour);
    /// The colour of ordinary text.
    void ShowInPaletteColour();

    /// Holds the size for a text, so that changing values move nothing around them.
    void ReserveFor(const QString& longest);
    /// Takes what room there is; a longer text is cut with dots and shown whole in the tool tip.
    void CutToFit();

  protected:
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    void SetText(const QString& text);
    void ApplyColour();

    QString m_Meaning;
    std::optional<Colour> m_Colour;
    bool m_CutToFit = false;
};

} // namespace ombrix
