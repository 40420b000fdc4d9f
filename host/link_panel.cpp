#include "link_panel.h"

#include "lamp.h"
#include "looks.h"
#include "table.h"

#include <gtkmm/cellrenderertext.h>

#include <pangomm/fontdescription.h>

namespace plchost {

namespace {

constexpr int tableHeight = 200;

} // namespace

LinkPanel::Columns::Columns()
{
    add(operand);
    add(value);
    add(age);
    add(note);
    add(weight);
}

LinkPanel::LinkPanel()
    : Gtk::Box(Gtk::ORIENTATION_VERTICAL, rowGap), m_head(Gtk::ORIENTATION_HORIZONTAL, gap),
      m_inside(Gtk::ORIENTATION_VERTICAL, rowGap), m_rows(Gtk::ListStore::create(m_columns))
{
    for (Gtk::Label* label : {&m_name, &m_lamp, &m_figures}) {
        m_head.pack_start(*label, Gtk::PACK_SHRINK);
    }
    for (Gtk::Label* label : {&m_reason, &m_lastValues}) {
        label->set_xalign(0);
        label->set_line_wrap(true);
    }
    m_table.set_model(m_rows);
    for (const auto* column :
         {&m_columns.operand, &m_columns.value, &m_columns.age, &m_columns.note}) {
        AddColumn(*column);
    }
    m_scroll.set_min_content_height(tableHeight);
    m_scroll.set_vexpand(true);
    m_scroll.set_shadow_type(Gtk::SHADOW_IN);
    m_scroll.add(m_table);
    m_inside.pack_start(m_scroll, Gtk::PACK_EXPAND_WIDGET);
    m_inside.pack_start(m_lastValues, Gtk::PACK_SHRINK);
    m_expander.add(m_inside);
    m_expander.set_resize_toplevel(true);
    property_margin() = gap;
    pack_start(m_head, Gtk::PACK_SHRINK);
    pack_start(m_reason, Gtk::PACK_SHRINK);
    pack_start(m_expander, Gtk::PACK_EXPAND_WIDGET);
}

void LinkPanel::AddColumn(const Gtk::TreeModelColumn<Glib::ustring>& column)
{
    const int count = m_table.append_column("", column);
    Gtk::TreeViewColumn& shown = *m_table.get_column(count - 1);
    shown.set_resizable(true);
    shown.add_attribute(
        dynamic_cast<Gtk::CellRendererText&>(*shown.get_first_cell()).property_weight(),
        m_columns.weight);
}

void LinkPanel::OpenTable()
{
    m_expander.set_expanded(true);
}

void LinkPanel::SetTexts(const HostTexts& texts)
{
    m_texts = &texts;
    m_name.set_text(texts.link);
    m_expander.set_label(texts.watchedOperands);
    m_lastValues.set_text(texts.lastValues);
    int place = 0;
    for (const char* title : {texts.operand, texts.value, texts.age, texts.note}) {
        m_table.get_column(place++)->set_title(title);
    }
}

void LinkPanel::Show(const LinkView& view, const std::string& stepsUser)
{
    m_lamp.set_markup(LampMarkup(*m_texts, view.state.status));
    const std::string losses = LossText(*m_texts, view.losses);
    m_figures.set_text(
        std::to_string(view.answersPerSecond) + ' ' + m_texts->answersPerSecond + "   " +
        CountText(*m_texts, view.operands) + (losses.empty() ? "" : "   " + losses) +
        (stepsUser.empty() ? "" : "   " + (m_texts->stepsGoTo + (' ' + stepsUser))));
    m_reason.set_text(view.state.reason);
    m_reason.set_visible(!view.state.reason.empty());
    ShowTable(view.operands);
}

void LinkPanel::ShowTable(const std::vector<ShownOperand>& operands)
{
    SetRowCount(m_rows, operands.size());
    auto row = m_rows->children().begin();
    for (const ShownOperand& operand : operands) {
        const Glib::ustring note = NoteText(*m_texts, operand);
        SetCell<Glib::ustring>(*row, m_columns.operand, operand.operand);
        SetCell<Glib::ustring>(*row, m_columns.value, operand.value);
        SetCell<Glib::ustring>(*row, m_columns.age, operand.age);
        SetCell(*row, m_columns.note, note);
        SetCell<int>(
            *row, m_columns.weight, note.empty() ? Pango::WEIGHT_NORMAL : Pango::WEIGHT_BOLD);
        ++row;
    }
}

} // namespace plchost
