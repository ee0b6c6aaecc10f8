#pragma once

#include "windows/widgets/ValueLabel.h"

#include <QLineEdit>

#include <cstdint>

namespace ombrix {

/// How what stands in a field compares with what has been taken.
enum class Entry { Taken, Pending, Wrong };

/// Marks a field by the colour of its ground.
void ColourEntry(QLineEdit& field, Entry entry);

/// The same, and says beneath it what is the matter.
/// @param note its label; empty for what has been taken
void MarkEntry(QLineEdit& field, ValueLabel& note, Entry entry, const QString& text);

/// A field for a number, decimal or 0x…, that is taken with Enter. What is typed and not yet taken
/// is marked and stays, whatever is shown meanwhile; what is no number is red. Esc gives it up.
class NumberField final : public QLineEdit {
    Q_OBJECT

  public:
    /// @param note the object name of the label that is to stand beneath the field
    NumberField(const QString& objectName, const QString& meaning, const QString& note,
                QWidget* parent);

    ValueLabel* Note() const { return m_Note; }
    /// Shows the number that stands now, unless another one is being typed.
    void ShowTaken(std::int32_t value);
    /// The same, and gives up what is being typed: it was meant for something else.
    void Reset(std::int32_t value);

  signals:
    /// A number was typed and Enter pressed. Whoever takes it shows what stands then.
    void Entered(double value);

  protected:
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void Judge();
    void Take();

    ValueLabel* m_Note;
    QString m_Taken;
    bool m_Typing = false;
};

} // namespace ombrix
