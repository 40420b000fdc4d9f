#pragma once

#include "machines_view.h"

#include <gtkmm/box.h>
#include <gtkmm/button.h>
#include <gtkmm/label.h>
#include <gtkmm/liststore.h>
#include <gtkmm/scrolledwindow.h>
#include <gtkmm/treeview.h>
#include <gtkmm/window.h>

#include <functional>
#include <string>
#include <vector>

// Lists the machines of a plant, and opens the one that the operator chooses. GUI thread.

namespace plchost {

class MachinesWindow : public Gtk::Window
{
public:
    /// @param plant its name.
    /// @param open is told the machine that was chosen.
    MachinesWindow(
        const HostTexts& texts,
        const std::string& plant,
        std::function<void(const std::string& machine)> open);

    /// @param sentence to stand above; empty: none.
    /// @param machines sorted by name.
    void Show(const std::string& sentence, const std::vector<ShownMachine>& machines);

    /// Shows a message until another machine is opened.
    void ShowProblem(const std::string& message);

private:
    struct Columns : Gtk::TreeModel::ColumnRecord
    {
        Columns();

        Gtk::TreeModelColumn<Glib::ustring> name;
        Gtk::TreeModelColumn<Glib::ustring> lamp; ///< Markup.
        Gtk::TreeModelColumn<Glib::ustring> programPage;
        Gtk::TreeModelColumn<Glib::ustring> writable;
        Gtk::TreeModelColumn<Glib::ustring> version;
        Gtk::TreeModelColumn<Glib::ustring> reason;
    };

    void AddColumn(const char* title, const Gtk::TreeModelColumn<Glib::ustring>& column);
    void OpenChosen();
    void SetRows(const std::vector<ShownMachine>& machines);
    void Choose(const Gtk::TreeModel::iterator& row);

    const HostTexts& m_texts;
    const std::function<void(const std::string& machine)> m_open;
    Gtk::Box m_all;
    Gtk::Label m_sentence;
    Gtk::Label m_problem;
    Gtk::ScrolledWindow m_scroll;
    Gtk::TreeView m_table;
    Gtk::Button m_openButton;
    const Columns m_columns;
    const Glib::RefPtr<Gtk::ListStore> m_rows;
};

} // namespace plchost
