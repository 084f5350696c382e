// A bar on the error output, if that is a terminal: "[##########          ] 5 of 10".
#ifndef ORLUNE_TOOLS_PROGRESSBAR_H
#define ORLUNE_TOOLS_PROGRESSBAR_H

namespace tools {

class ProgressBar
{
public:
    explicit ProgressBar(int steps);
    ~ProgressBar(); // takes the bar away
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    void step();
    // Takes the bar away until the next step, for a line to be printed.
    void clear();

private:
    void draw() const;

    const int m_steps;
    const bool m_isShown;
    int m_done = 0;
};

} // namespace tools

#endif
