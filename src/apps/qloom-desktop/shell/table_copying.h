#pragma once

class QTableView;

namespace loom {

// Lets a person copy the selected cells of a table (Ctrl+C), their whole columns, or everything, from its context menu
// too. What is large asks first.
void LetCopy(QTableView& table);

}  // namespace loom
