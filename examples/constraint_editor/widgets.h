#pragma once

#include <QtWidgets>

/// Names a widget for tests, and for those who do not see it.
inline void setNames(QWidget* widget, char const* name, char const* accessibleName) {
    widget->setObjectName(name);
    widget->setAccessibleName(accessibleName);
}

/// Shows a model as a table whose rows are all of one height, which large models need.
inline void showAsTable(QTreeView* table, QAbstractItemModel& model) {
    table->setModel(&model);
    table->setRootIsDecorated(false);
    table->setUniformRowHeights(true);
    table->setAlternatingRowColors(true);
}
