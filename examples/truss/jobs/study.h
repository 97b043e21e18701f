// SPDX-License-Identifier: MIT
// truss: jobs
#pragma once

#include <kel/ztring.h>

#include <cstddef>
#include <string>
#include <vector>

namespace truss
{
struct Response;

/// How a truss answers when the area of one bar takes several values.
class Study
{
public:
    struct Row
    {
        double area = 0;
        double weight = 0;
        double displacement = 0; ///< the largest along an axis, in size
        double stress = 0;       ///< of the bar
    };

    /// From text of the form BAR:from:to:steps; anything else is a Problem. The areas are evenly spaced.
    explicit Study(const std::string& text);

    const Ztring& getBar() const { return m_bar; }
    const std::vector<Row>& getRows() const { return m_rows; }

    /// Fills the row of one case.
    void setResult(std::size_t row, const Response& response);

    /// @name How far the cases are
    /// @{

    /// Notes that a case begins, if it may: few go on at a time, since each has equations of its own. Not asked once a
    /// case has failed.
    bool begin();
    /// Every case does so once, also one that has not begun.
    void noteEnd(bool failed);
    bool isComplete() const { return m_ended == m_rows.size(); }
    bool hasFailed() const { return m_failed; }
    /// 0 to 100.
    int getPercent() const { return static_cast<int>(100 * m_ended / m_rows.size()); }

    /// @}

private:
    Ztring m_bar;
    std::vector<Row> m_rows;
    std::size_t m_begun = 0;
    std::size_t m_ended = 0;
    bool m_failed = false;
};
} // namespace truss
