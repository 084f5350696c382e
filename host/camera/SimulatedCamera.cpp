#include "host/camera/SimulatedCamera.h"

#include <algorithm>
#include <cstring>
#include <system_error>

#include <QtEndian>

#include "host/camera/LutRegister.h"

namespace host {

// The memory's map. What a user set holds starts at kFeatures and goes to the end.
constexpr int kDisplayName = 0;
constexpr int kDisplayNameBytes = 256;
constexpr int kParamsLocked = 256;
constexpr int kUserSetSelector = 260;
constexpr int kUserSetDefault = 264;
constexpr int kFeatures = 512;
constexpr int kLutSelector = 512;
constexpr int kLutEnable = 516;
constexpr int kTables = 520;
constexpr int kTableCount = 2;

constexpr int kMaxLutBytes = 1 << 20;
constexpr double kSlowestRate = 0.1; // frames a second
constexpr double kFastestRate = 1000;

namespace {

struct Model
{
    const char* name;
    bool hasLut;
    bool hasEnable;
    int lutBytes;
};

constexpr Model kModels[] = {
    {"lut", true, false, 16424},
    {"lut-enable", true, true, 16424},
    {"no-lut", false, false, 0},
};

// The end of kModels when there is none of that name.
const Model* findModel(const QString& name)
{
    return std::find_if(std::begin(kModels), std::end(kModels),
                        [&](const Model& model) { return name == QLatin1String(model.name); });
}

int lutBytesOf(const SimulatedCameraOptions& options)
{
    return options.lutBytes < 0 ? findModel(options.model)->lutBytes : options.lutBytes;
}

void refuseUnlessEmpty(const QString& sentence)
{
    if (!sentence.isEmpty()) {
        refuseAccess(sentence.toLatin1().toStdString());
    }
}

QByteArray factoryFeatures(int lutBytes)
{
    return QByteArray(kTables - kFeatures, '\0') + identityRegister(lutBytes).repeated(kTableCount);
}

QString unpluggedSentence()
{
    return SimulatedCamera::tr("The camera is unplugged.");
}

} // namespace

QStringList simulatedCameraModels()
{
    QStringList names;
    for (const Model& model : kModels) {
        names << QString::fromLatin1(model.name);
    }
    return names;
}

std::unique_ptr<SimulatedCamera> makeSimulatedCamera(const SimulatedCameraOptions& options, QString* error)
{
    const auto refuse = [&](const QString& sentence) {
        *error = sentence;
        return nullptr;
    };
    const Model* model = findModel(options.model);
    if (model == std::end(kModels)) {
        return refuse(SimulatedCamera::tr("There is no camera model \"%1\"; the models are %2.")
                          .arg(options.model, simulatedCameraModels().join(QStringLiteral(", "))));
    }
    if (options.lutBytes >= 0 && !model->hasLut) {
        return refuse(
            SimulatedCamera::tr("A camera of model %1 has no LUT register that could have a length.")
                .arg(options.model));
    }
    if (options.lutBytes > kMaxLutBytes) {
        return refuse(SimulatedCamera::tr("A LUT register has at most %1 bytes.").arg(kMaxLutBytes));
    }
    if (options.displayName.size() >= kDisplayNameBytes) {
        return refuse(
            SimulatedCamera::tr("A camera's display name has at most %1 bytes.").arg(kDisplayNameBytes - 1));
    }
    if (!(options.frameRate >= kSlowestRate && options.frameRate <= kFastestRate)) {
        return refuse(SimulatedCamera::tr("A frame rate lies between %1 and %2 frames a second.")
                          .arg(kSlowestRate)
                          .arg(kFastestRate));
    }
    const PixelFormat* format = pixelFormatByName(options.pixelFormat);
    if (!format) {
        QStringList names;
        for (const PixelFormat& known : pixelFormats()) {
            names << QString::fromLatin1(known.name);
        }
        return refuse(SimulatedCamera::tr("There is no pixel format \"%1\"; the formats are %2.")
                          .arg(options.pixelFormat, names.join(QStringLiteral(", "))));
    }
    QStringList warnings;
    auto source =
        FrameSource::open(options.frames, QSize(options.width, options.height), *format, error, &warnings);
    if (!source) {
        return nullptr;
    }
    return std::make_unique<SimulatedCamera>(options, *format, std::move(source), warnings);
}

SimulatedCamera::SimulatedCamera(const SimulatedCameraOptions& options, const PixelFormat& format,
                                 std::unique_ptr<FrameSource> source, QStringList warnings)
    : m_model(options.model), m_hasLut(findModel(options.model)->hasLut),
      m_hasEnable(findModel(options.model)->hasEnable), m_lutBytes(lutBytesOf(options)), m_format(format),
      m_frameRate(options.frameRate), m_frameSize(options.width, options.height), m_source(std::move(source)),
      m_warnings(std::move(warnings)), m_memory(kTables + kTableCount * m_lutBytes), m_deviceMap(m_faults),
      m_remoteMap(m_faults),
      m_userSets(factoryFeatures(m_lutBytes),
                 QStringLiteral("%1 with a LUT register of %2 bytes").arg(m_model).arg(m_lutBytes),
                 options.stateFile)
{
    if (!m_userSets.problem().isEmpty()) {
        m_warnings << m_userSets.problem();
    }
    m_memory.write(kDisplayName, options.displayName);
    m_memory.setWord(kUserSetDefault, m_userSets.startSet());
    m_memory.write(kFeatures, m_userSets.bytes(m_userSets.startSet()));
    addNodes();
}

void SimulatedCamera::addNodes()
{
    m_deviceMap.add(std::make_unique<StringNode>("DeviceDisplayName", m_faults, m_memory, kDisplayName,
                                                 kDisplayNameBytes));

    m_remoteMap.add(
        std::make_unique<IntegerNode>("TLParamsLocked", m_faults, readOnly, m_memory, kParamsLocked));
    m_remoteMap.add(std::make_unique<EnumerationNode>("UserSetSelector", m_faults, readWrite, m_memory,
                                                      kUserSetSelector, UserSets::kCount));
    m_remoteMap.add(std::make_unique<EnumerationNode>(
        "UserSetDefault", m_faults, readWrite, m_memory, kUserSetDefault, UserSets::kCount,
        [this](std::int64_t set) { refuseUnlessEmpty(m_userSets.setStartSet(static_cast<int>(set))); }));
    m_remoteMap.add(std::make_unique<CommandNode>("UserSetLoad", m_faults, [this] { loadUserSet(); }));
    m_remoteMap.add(std::make_unique<CommandNode>("UserSetSave", m_faults, [this] { saveUserSet(); }));
    if (!m_hasLut) {
        return;
    }
    m_remoteMap.add(std::make_unique<EnumerationNode>("LUTSelector", m_faults, readWrite, m_memory,
                                                      kLutSelector, kTableCount));
    m_remoteMap.add(std::make_unique<RegisterNode>(
        "LUTValueAll", m_faults, [this] { return isFrozen() ? GenApi_3_0::RO : GenApi_3_0::RW; }, m_memory,
        [this] { return selectedTable(); }, m_lutBytes, [this] { emit registerWritten(m_lutBytes); }));
    if (m_hasEnable) {
        m_remoteMap.add(
            std::make_unique<BooleanNode>("LUTEnable", m_faults, readWrite, m_memory, kLutEnable));
    }
}

bool SimulatedCamera::isFrozen() const
{
    return m_hasLut && !m_hasEnable && m_memory.word(kParamsLocked) != 0;
}

int SimulatedCamera::selectedTable() const
{
    const int selected =
        std::clamp(m_memory.word(kLutSelector), 0, kTableCount - 1); // a state file's, perhaps
    return kTables + selected * m_lutBytes;
}

void SimulatedCamera::loadUserSet()
{
    if (isFrozen()) {
        refuseAccess("No user set can be loaded while TLParamsLocked is 1.");
    }
    m_memory.write(kFeatures, m_userSets.bytes(m_memory.word(kUserSetSelector)));
}

void SimulatedCamera::saveUserSet()
{
    if (m_memory.word(kUserSetSelector) == UserSets::kFactorySet) {
        refuseAccess("The factory's user set cannot be saved.");
    }
    refuseUnlessEmpty(m_userSets.saveUserSet(m_memory.read(kFeatures, featureBytes())));
}

QString SimulatedCamera::name() const
{
    return tr("Simulated camera, model %1").arg(m_model);
}

void SimulatedCamera::setFrameSink(FrameSink sink)
{
    Q_ASSERT(!isStreaming());
    m_sink = std::move(sink);
}

QString SimulatedCamera::startStream()
{
    if (isStreaming()) {
        return {};
    }
    if (isUnplugged()) {
        return unpluggedSentence();
    }
    try {
        m_stream.start(m_frameRate, [this](std::uint64_t number) { produceFrame(number); });
    } catch (const std::system_error& failure) {
        return tr("The camera's stream cannot be started: %1.").arg(QString::fromLocal8Bit(failure.what()));
    }
    updateLock();
    emit streamingChanged(true);
    return {};
}

void SimulatedCamera::stopStream()
{
    if (!isStreaming()) {
        return;
    }
    m_stream.stop();
    updateLock();
    emit streamingChanged(false);
}

QString SimulatedCamera::reconnect()
{
    stopStream();
    return isUnplugged() ? unpluggedSentence() : QString();
}

QString SimulatedCamera::setScene(const QString& what)
{
    QString error;
    QStringList warnings;
    auto source = FrameSource::open(what, m_frameSize, m_format, &error, &warnings);
    if (!source) {
        return error;
    }
    const bool wasStreaming = isStreaming();
    stopStream();
    m_source = std::move(source);
    m_warnings = warnings;
    return wasStreaming ? startStream() : QString();
}

void SimulatedCamera::updateLock()
{
    m_memory.setWord(kParamsLocked, isStreaming() || m_lockedByHand);
}

QString SimulatedCamera::setLocked(bool on)
{
    m_lockedByHand = on;
    updateLock();
    return {};
}

// The frame thread. Enable and table come out of the memory in one step.
void SimulatedCamera::produceFrame(std::uint64_t number)
{
    m_source->read(number, m_raw);
    const QByteArray features = m_memory.read(kLutEnable, kTables - kLutEnable + m_lutBytes);
    const bool inForce = !m_hasEnable || qFromLittleEndian<qint32>(features.constData()) != 0;
    const std::optional<OutputTable> table =
        inForce ? outputsOf(features.mid(kTables - kLutEnable)) : std::nullopt;

    m_frame.pixelFormat = m_format.code;
    m_frame.width = m_source->size().width();
    m_frame.height = m_source->size().height();
    m_frame.number = number;
    m_frame.pixels.resize(m_raw.size() * m_format.bytesPerPixel());
    const int shift = 12 - m_format.bits;
    for (std::size_t i = 0; i < m_raw.size(); ++i) {
        const auto value = static_cast<std::uint16_t>((table ? (*table)[m_raw[i]] : m_raw[i]) >> shift);
        if (m_format.bytesPerPixel() == 1) {
            m_frame.pixels[i] = static_cast<std::uint8_t>(value);
        } else {
            std::memcpy(&m_frame.pixels[2 * i], &value, 2);
        }
    }
    if (m_sink) {
        m_sink(m_frame);
    }
}

QByteArray SimulatedCamera::registerBytes(QString* error)
{
    return selectedTableIn(m_memory.read(kFeatures, featureBytes()), error);
}

QByteArray SimulatedCamera::userSetBytes(QString* error)
{
    return selectedTableIn(m_userSets.bytes(UserSets::kUserSet0), error);
}

QByteArray SimulatedCamera::selectedTableIn(const QByteArray& features, QString* error) const
{
    if (!m_hasLut) {
        *error = noRegister();
        return {};
    }
    return features.mid(selectedTable() - kFeatures, m_lutBytes);
}

QString SimulatedCamera::noRegister() const
{
    return tr("This camera has no LUT register.");
}

QString SimulatedCamera::pokeRegister(const QByteArray& bytes)
{
    if (!m_hasLut) {
        return noRegister();
    }
    if (bytes.size() != m_lutBytes) {
        return tr("The camera's LUT register has %1 bytes, not %2.").arg(m_lutBytes).arg(bytes.size());
    }
    m_memory.write(selectedTable(), bytes);
    return {};
}

QStringList SimulatedCamera::faultNames() const
{
    return AccessFaults::names(m_remoteMap.names() + m_deviceMap.names());
}

bool SimulatedCamera::isUnplugged() const
{
    return m_faults.isOn(QString::fromLatin1(AccessFaults::kUnplugged));
}

QString SimulatedCamera::setFault(const QString& name, bool on)
{
    if (!faultNames().contains(name)) {
        return tr("This camera has no fault \"%1\".").arg(name);
    }
    const bool wasUnplugged = isUnplugged();
    m_faults.setSwitch(name, on);
    if (isUnplugged() && !wasUnplugged) {
        stopStream();
        emit lost(unpluggedSentence());
    }
    return {};
}

} // namespace host
