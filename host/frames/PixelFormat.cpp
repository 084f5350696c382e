#include "host/frames/PixelFormat.h"

#include <algorithm>

namespace host {

const std::vector<PixelFormat>& pixelFormats()
{
    static const std::vector<PixelFormat> formats{
        {"Mono8", 0x01080001, 8, nullptr},     {"BayerGR8", 0x01080008, 8, "GRBG"},
        {"BayerRG8", 0x01080009, 8, "RGGB"},   {"BayerGB8", 0x0108000A, 8, "GBRG"},
        {"BayerBG8", 0x0108000B, 8, "BGGR"},   {"Mono10", 0x01100003, 10, nullptr},
        {"BayerGR10", 0x0110000C, 10, "GRBG"}, {"BayerRG10", 0x0110000D, 10, "RGGB"},
        {"BayerGB10", 0x0110000E, 10, "GBRG"}, {"BayerBG10", 0x0110000F, 10, "BGGR"},
        {"Mono12", 0x01100005, 12, nullptr},   {"BayerGR12", 0x01100010, 12, "GRBG"},
        {"BayerRG12", 0x01100011, 12, "RGGB"}, {"BayerGB12", 0x01100012, 12, "GBRG"},
        {"BayerBG12", 0x01100013, 12, "BGGR"},
    };
    return formats;
}

template <class Predicate>
static const PixelFormat* findFormat(Predicate wanted)
{
    const std::vector<PixelFormat>& formats = pixelFormats();
    const auto found = std::find_if(formats.begin(), formats.end(), wanted);
    return found == formats.end() ? nullptr : &*found;
}

const PixelFormat* pixelFormatByName(const QString& name)
{
    return findFormat([&](const PixelFormat& format) { return name == QLatin1String(format.name); });
}

const PixelFormat* pixelFormatByCode(std::uint32_t code)
{
    return findFormat([&](const PixelFormat& format) { return code == format.code; });
}

} // namespace host
