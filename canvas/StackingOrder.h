#pragma once

#include <QList>

class DashboardItem;
class QGraphicsScene;

// How the items of a canvas lie above each other. An item is put between two layers by a half step; whole
// numbers return when the stack is normalised, which a save does first.

enum class StackingMove { BringToFront, SendToBack, BringForward, SendBackward };

/// The item's z value after the move; its present one when it is already there.
qreal stackedZ(const DashboardItem& item, StackingMove move);

/// Gives the top-level items the z values 0, 1, 2, … in their present order (equal values keep theirs). Null
/// is ignored.
void normalizeZOrder(QGraphicsScene* scene);
