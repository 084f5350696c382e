// The frame path: for a camera without a LUT of its own, each frame goes through a table cut down to its
// depth.
#include "plugin/OrlunePlugin.h"

#include <memory>
#include <new>

#include <QtGlobal>

#include "editor/OrluneDlg.h"
#include "lut/LutImage.h"
#include "plugin/FrameKernels.h"

namespace {
constexpr int kMapStage = 1; // the stage of the host's frame road at which the table is applied
constexpr int kLutBits = 12;
} // namespace

int OrlunePlugin::ProcessFrame(FrameIn* pstIn, FrameOut* pstOut, int nStage, FrameResult* pstResult)
{
    if (!m_pDlg)
        return kPluginInvalidParam;
    if (m_pDlg->IsLutSupported() || nStage != kMapStage)
        return kPluginSuccess;
    if (!pstIn || !pstOut || !pstResult || !pstIn->data || !pstOut->data)
        return kPluginInvalidParam;
    const int bits = GetPixelBits(pstIn->pixelFormat);
    if (bits < 0)
        return kPluginInvalidParam;
    const int entries = 1 << bits;
    const std::unique_ptr<std::int32_t[]> table(new (std::nothrow) std::int32_t[std::size_t(entries)]);
    if (!table || !SampleLut(table.get(), entries, kLutBits - bits))
        return kPluginInvalidParam;

    const int code = bits > 8 ? ApplyLut16(static_cast<const std::uint16_t*>(pstIn->data),
                                           static_cast<std::uint16_t*>(pstOut->data), pstOut->width,
                                           pstOut->height, table.get(), entries)
                              : ApplyLut8(static_cast<const std::uint8_t*>(pstIn->data),
                                          static_cast<std::uint8_t*>(pstOut->data), pstOut->width,
                                          pstOut->height, table.get());
    if (code != kPluginSuccess)
        return kPluginInvalidParam;
    pstResult->processed = 1;
    return kPluginSuccess;
}

// Cuts the newest table down to a frame's depth; false when there is none. The snapshot goes back before the
// pixels are mapped, however long that takes.
bool OrlunePlugin::SampleLut(std::int32_t* table, int nEntries, int nShift)
{
    const auto snapshot = m_pDlg->AcquireLut();
    if (!snapshot.entries())
        return false;
    ResampleLut(snapshot.entries(), orlune::kLutEntries, table, nEntries, nShift);
    return true;
}

int OrlunePlugin::GetPixelBits(unsigned nCode)
{
    const int bits = orlune::GetPixelBits(nCode);
    if (bits < 0)
        qDebug("Invalid pixel format.\n");
    return bits;
}

void OrlunePlugin::ResampleLut(const std::int32_t* src, int nSrcCount, std::int32_t* dst, int nDstCount,
                               int nShift)
{
    orlune::ResampleLut(src, nSrcCount, dst, nDstCount, nShift);
}

int OrlunePlugin::ApplyLut16(const std::uint16_t* src, std::uint16_t* dst, int nWidth, int nHeight,
                             const std::int32_t* table, int nEntries)
{
    return orlune::ApplyLut16(src, dst, nWidth, nHeight, table, nEntries);
}

int OrlunePlugin::ApplyLut8(const std::uint8_t* src, std::uint8_t* dst, int nWidth, int nHeight,
                            const std::int32_t* table)
{
    return orlune::ApplyLut8(src, dst, nWidth, nHeight, table);
}
