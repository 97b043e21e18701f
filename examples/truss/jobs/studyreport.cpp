// SPDX-License-Identifier: MIT
// truss: jobs
#include "truss/jobs/studyreport.h"

#include "truss/exchange/numbertext.h"
#include "truss/exchange/outputfile.h"
#include "truss/jobs/study.h"
#include "truss/picture/curveplot.h"
#include "truss/text/text.h"

#include <kel/log_kel.h>
#include <kel/translator.h>

#include <ostream>
#include <sstream>
#include <utility>

namespace truss
{
namespace
{
void writeRows(const Study& study, std::ostream& out)
{
    out << "area,weight,displacement,stress\n";
    for (const Study::Row& row : study.getRows())
        out << NumberText::format(row.area) << ',' << NumberText::format(row.weight) << ','
            << NumberText::format(row.displacement) << ',' << NumberText::format(row.stress) << '\n';
}
} // namespace

StudyReport::StudyReport(std::shared_ptr<Study> study, const std::optional<Kel::File>& table,
                         const std::optional<Kel::File>& plot)
    : Job(Translator::tr("Writing the study")),
      m_study(std::move(study)),
      m_table(table),
      m_plot(plot)
{
}

bool StudyReport::step()
{
    if (!m_study->isComplete())
        return true;
    if (m_study->hasFailed())
        return false; // the case that failed has said why
    if (m_table)
        writeTable(*m_table);
    if (m_plot)
        writePlot(*m_plot);
    if (!m_table && !m_plot)
        logTable();
    return false;
}

int StudyReport::getPercent() const
{
    return m_study->getPercent();
}

void StudyReport::writeTable(const Kel::File& file) const
{
    OutputFile output(file);
    writeRows(*m_study, output.getOut());
    output.close();
}

void StudyReport::writePlot(const Kel::File& file) const
{
    std::vector<CurvePlot::Point> points;
    for (const Study::Row& row : m_study->getRows())
        points.push_back({row.area, row.displacement});
    OutputFile output(file);
    CurvePlot plot(fill(Translator::tr("Area of bar '%1'"), m_study->getBar()), Translator::tr("Largest displacement"));
    plot.draw(output.getOut(), points);
    output.close();
}

void StudyReport::logTable() const
{
    std::ostringstream table;
    writeRows(*m_study, table);
    Kel::Log::getSingleton()->append(Ztring(table.str()), Message::Info);
}
} // namespace truss
