#include "machines_window.h"

#include "lamp.h"
#include "looks.h"
#include "table.h"

#include <algorithm>
#include <utility>

namespace plchost {

namespace {

constexpr int usualWidth = 860;
constexpr int usualHeight = 320;

/// Where the lamp stands among the columns.
constexpr int lampColumn = 1;

} // namespace

MachinesWindow::Columns::Columns()
{
    add(name);
    add(lamp);
    add(programPage);
    add(writable);
    add(version);
    add(reason);
}

MachinesWindow::MachinesWindow(
    const HostTexts& texts,
    const std::string& plant,
    std::function<void(const std::string& machine)> open)
    : m_texts(texts), m_open(std::move(open)), m_all(Gtk::ORIENTATION_VERTICAL, gap),
      m_openButton(texts.open, true), m_rows(Gtk::ListStore::create(m_columns))
{
    set_title(plant + ": " + texts.machines);
    set_default_size(usualWidth, usualHeight);
    for (Gtk::Label* label : {&m_sentence, &m_problem}) {
        label->set_xalign(0);
        label->set_line_wrap(true);
        label->set_no_show_all(true);
    }
    m_table.set_model(m_rows);
    AddColumn(texts.machine, m_columns.name);
    m_table.insert_column_with_data_func(
        lampColumn,
        texts.link,
        *Gtk::manage(new Gtk::CellRendererText),
        [this](Gtk::CellRenderer* cell, const Gtk::TreeModel::iterator& row) {
            dynamic_cast<Gtk::CellRendererText&>(*cell).property_markup() =
                row->get_value(m_columns.lamp);
        });
    AddColumn(texts.reason, m_columns.reason);
    AddColumn(texts.programPage, m_columns.programPage);
    AddColumn(texts.writable, m_columns.writable);
    AddColumn(texts.version, m_columns.version);
    m_table.set_search_column(m_columns.name);
    m_table.signal_row_activated().connect(
        [this](const Gtk::TreeModel::Path&, Gtk::TreeViewColumn*) { OpenChosen(); });
    m_openButton.signal_clicked().connect([this] { OpenChosen(); });
    m_openButton.set_halign(Gtk::ALIGN_END);
    m_scroll.set_shadow_type(Gtk::SHADOW_IN);
    m_scroll.add(m_table);
    m_all.property_margin() = gap;
    m_all.pack_start(m_sentence, Gtk::PACK_SHRINK);
    m_all.pack_start(m_scroll, Gtk::PACK_EXPAND_WIDGET);
    m_all.pack_start(m_problem, Gtk::PACK_SHRINK);
    m_all.pack_start(m_openButton, Gtk::PACK_SHRINK);
    add(m_all);
    m_all.show_all();
    m_table.grab_focus();
}

void MachinesWindow::AddColumn(const char* title, const Gtk::TreeModelColumn<Glib::ustring>& column)
{
    const int count = m_table.append_column(title, column);
    m_table.get_column(count - 1)->set_resizable(true);
}

void MachinesWindow::Show(const std::string& sentence, const std::vector<ShownMachine>& machines)
{
    m_sentence.set_text(sentence);
    m_sentence.set_visible(!sentence.empty());
    m_openButton.set_sensitive(!machines.empty());
    SetRows(machines);
}

/// What the operator has chosen stays so when machines come and go.
void MachinesWindow::SetRows(const std::vector<ShownMachine>& machines)
{
    const auto chosen = m_table.get_selection()->get_selected();
    const Glib::ustring name = chosen ? chosen->get_value(m_columns.name) : Glib::ustring();
    SetRowCount(m_rows, machines.size());
    auto row = m_rows->children().begin();
    for (const ShownMachine& machine : machines) {
        SetCell<Glib::ustring>(*row, m_columns.name, machine.name);
        SetCell(*row, m_columns.lamp, LampMarkup(m_texts, machine.status));
        SetCell<Glib::ustring>(*row, m_columns.programPage, machine.programPage);
        SetCell<Glib::ustring>(*row, m_columns.writable, machine.writable);
        SetCell<Glib::ustring>(*row, m_columns.version, machine.version);
        SetCell<Glib::ustring>(*row, m_columns.reason, machine.reason);
        if (machine.name == name.raw() || (name.empty() && row == m_rows->children().begin())) {
            Choose(row);
        }
        ++row;
    }
}

/// Also for the keyboard, which starts from there.
void MachinesWindow::Choose(const Gtk::TreeModel::iterator& row)
{
    if (!m_table.get_selection()->is_selected(row)) {
        m_table.set_cursor(m_rows->get_path(row));
    }
}

void MachinesWindow::OpenChosen()
{
    if (const auto chosen = m_table.get_selection()->get_selected()) {
        m_problem.hide();
        m_open(chosen->get_value(m_columns.name));
    }
}

void MachinesWindow::ShowProblem(const std::string& message)
{
    m_problem.set_text(message);
    m_problem.show();
}

} // namespace plchost
