#pragma once

#include <gtkmm/liststore.h>

#include <cstddef>

// The tables of the host's windows. GUI thread.

namespace plchost {

/// Writes a cell only when that changes it: each change has the row drawn anew.
template <typename Value>
void SetCell(const Gtk::TreeRow& row, const Gtk::TreeModelColumn<Value>& column, const Value& value)
{
    if (row.get_value(column) != value) {
        row.set_value(column, value);
    }
}

/// Gives a table so many rows; those that stay, stay as they are.
inline void SetRowCount(const Glib::RefPtr<Gtk::ListStore>& rows, std::size_t count)
{
    while (rows->children().size() > count) {
        rows->erase(--rows->children().end());
    }
    while (rows->children().size() < count) {
        rows->append();
    }
}

} // namespace plchost
