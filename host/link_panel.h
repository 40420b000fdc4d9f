#pragma once

#include "link_view.h"
#include "texts.h"

#include <gtkmm/box.h>
#include <gtkmm/expander.h>
#include <gtkmm/label.h>
#include <gtkmm/liststore.h>
#include <gtkmm/scrolledwindow.h>
#include <gtkmm/treeview.h>

#include <cstddef>

// What is known of the link to the machine: a lamp, figures, a table of what is watched. GUI
// thread.

namespace plchost {

class LinkPanel : public Gtk::Box
{
public:
    LinkPanel();

    void SetTexts(const HostTexts& texts);
    /// @param stepsUser who has the program states from far away; empty: nobody.
    void Show(const LinkView& view, const std::string& stepsUser);
    /// The table is open; the operator may close it, and open it again.
    void OpenTable();

private:
    struct Columns : Gtk::TreeModel::ColumnRecord
    {
        Columns();

        Gtk::TreeModelColumn<Glib::ustring> operand;
        Gtk::TreeModelColumn<Glib::ustring> value;
        Gtk::TreeModelColumn<Glib::ustring> age;
        Gtk::TreeModelColumn<Glib::ustring> note;
        Gtk::TreeModelColumn<int> weight; ///< Of the font: what is marked is bold.
    };

    void AddColumn(const Gtk::TreeModelColumn<Glib::ustring>& column);
    void ShowTable(const std::vector<ShownOperand>& operands);

    const HostTexts* m_texts = nullptr; ///< Lives as long as the program.
    Gtk::Box m_head;
    Gtk::Label m_name;
    Gtk::Label m_lamp;
    Gtk::Label m_figures;
    Gtk::Label m_reason;
    Gtk::Expander m_expander;
    Gtk::Box m_inside;
    Gtk::Label m_lastValues;
    Gtk::ScrolledWindow m_scroll;
    Gtk::TreeView m_table;
    const Columns m_columns;
    const Glib::RefPtr<Gtk::ListStore> m_rows;
};

} // namespace plchost
