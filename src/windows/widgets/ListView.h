#pragma once

class QAbstractItemView;

namespace ombrix {

/// Fits every column to the wider of its heading and its widest entry. A view that has no
/// columns to fit, such as a list of icons, is left untouched.
void AutoSizeColumns(QAbstractItemView& list);

} // namespace ombrix
