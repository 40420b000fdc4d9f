#include "plcprggrid_table.h"

#include "plclist_measure.h"

PlcPrgTable::PlcPrgTable(const std::vector<DB_BAUSTEIN>& lines) : m_lines(lines) {}

void PlcPrgTable::ShowLines()
{
    const std::size_t formerRows = m_states.RowCount();
    m_states.Clear(0);
    m_values.Clear(0);
    if (formerRows > 0) {
        Notify(wxGRIDTABLE_NOTIFY_ROWS_DELETED, 0, formerRows);
    }
    m_states.Clear(m_lines.size());
    m_values.Clear(m_lines.size());
    for (const DB_BAUSTEIN& line : m_lines) {
        m_states.Append(line.state);
        m_values.Append(line.value);
    }
    if (!m_lines.empty()) {
        Notify(wxGRIDTABLE_NOTIFY_ROWS_APPENDED, m_lines.size(), 0);
    }
}

bool PlcPrgTable::ShowState(int row, const DB_BAUSTEIN& line)
{
    const auto position = static_cast<std::size_t>(row);
    const bool newState = m_states.Replace(position, line.state);
    const bool newValue = m_values.Replace(position, line.value);
    return newState || newValue;
}

int PlcPrgTable::GetNumberRows()
{
    return static_cast<int>(m_states.RowCount());
}

int PlcPrgTable::GetNumberCols()
{
    return PrgColumnCount;
}

wxString PlcPrgTable::GetValue(int row, int col)
{
    const auto position = static_cast<std::size_t>(row);
    if (col == PrgColumnText) {
        return m_lines[position].text;
    }
    return Shown(static_cast<PrgColumn>(col)).Text(position);
}

void PlcPrgTable::SetValue(int /*row*/, int /*col*/, const wxString& /*value*/) {}

wxString PlcPrgTable::GetColLabelValue(int col)
{
    return m_labels[static_cast<std::size_t>(col)];
}

void PlcPrgTable::SetColLabelValue(int col, const wxString& label)
{
    m_labels[static_cast<std::size_t>(col)] = label;
}

bool PlcPrgTable::CanMeasureColUsingSameAttr(int /*col*/) const
{
    return true;
}

ShownColumn& PlcPrgTable::Shown(PrgColumn column)
{
    return column == PrgColumnState ? m_states : m_values;
}

void PlcPrgTable::Notify(int id, std::size_t argument1, std::size_t argument2)
{
    wxGridTableMessage message(this, id, static_cast<int>(argument1), static_cast<int>(argument2));
    GetView()->ProcessTableMessage(message);
}
