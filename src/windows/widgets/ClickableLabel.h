#pragma once

#include "windows/widgets/ValueLabel.h"

namespace ombrix {

/// A value that can be clicked, or chosen with the keyboard, to be looked at more closely.
class ClickableLabel final : public ValueLabel {
    Q_OBJECT

  public:
    ClickableLabel(const QString& objectName, QString meaning, QWidget* parent);

  signals:
    void Clicked();

  protected:
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
};

} // namespace ombrix
