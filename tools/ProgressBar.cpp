#include "tools/ProgressBar.h"

#include <cstdio>
#include <string>

#include <QtGlobal>

#ifdef Q_OS_WIN
#include <io.h>
#else
#include <unistd.h>
#endif

namespace tools {

namespace {

constexpr int kWidth = 40;

bool isTerminal()
{
#ifdef Q_OS_WIN
    return _isatty(_fileno(stderr));
#else
    return isatty(fileno(stderr));
#endif
}

} // namespace

ProgressBar::ProgressBar(int steps) : m_steps(steps), m_isShown(isTerminal())
{
    draw();
}

ProgressBar::~ProgressBar()
{
    clear();
}

void ProgressBar::step()
{
    ++m_done;
    draw();
}

void ProgressBar::clear()
{
    if (m_isShown)
        std::fputs("\r\033[K", stderr);
}

void ProgressBar::draw() const
{
    if (!m_isShown)
        return;
    const int filled = int(qint64(kWidth) * m_done / m_steps);
    const std::string bar = std::string(filled, '#') + std::string(kWidth - filled, ' ');
    std::fprintf(stderr, "\r[%s] %d of %d", bar.c_str(), m_done, m_steps);
}

} // namespace tools
