#pragma once

class QWidget;

namespace ombrix {

/// Keeps a window in front of the one that it belongs to, whatever is clicked, and opens it in the
/// middle of that one: a Cancel that lies behind another window is none.
/// @param owner outlives the window
void KeepAbove(QWidget& window, QWidget& owner);

/// Shows a window, or brings the one that is shown to the front.
void BringUp(QWidget& window);

/// Says that a window shows a procedure: after each question it comes to the front again.
void MarkAsProcedureWindow(QWidget& window);
/// The window that shows the procedure which runs; null when there is none.
QWidget* ProcedureWindow();

} // namespace ombrix
