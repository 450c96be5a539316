#include "View/MainController.h"

#include "Common/NotificationCenter.h"
#include "HIDDevice/UnfinishedUploads.h"
#include "Language/AppText.h"
#include "FocusWatch/FocusSource.h"
#include "SQLite/DeviceSQLite.h"
#include "SQLite/LocalSQLite.h"

#include <QDateTime>
#include <QPainter>

namespace {
std::vector<HIDMonitorData> keyboardIds()
{
    return {{OrvaneUsb::kVendorId, OrvaneUsb::kProductIdPrimary},
            {OrvaneUsb::kVendorId, OrvaneUsb::kProductIdSecondary}};
}
}  // namespace

MainController::MainController(Environment environment, QWidget* parent)
    : QWidget(parent),
      timetickcount(QDateTime::currentMSecsSinceEpoch()),
      rfDeviceMonitor(keyboardIds(), OrvaneUsb::kConfigFeatureSize, environment.hidManagerFactory),
      environment_(std::move(environment)),
      transport_(std::make_unique<TransportQueue>())
{
    setObjectName(QStringLiteral("MainController"));
    rfDeviceMonitor.setProblemHandler([this](const QString& message) {
        QMetaObject::invokeMethod(this, [this, message] {
            showProblem(message);
            noteKeyboardUnreachable(message);
        }, Qt::QueuedConnection);
    });
    connect(transport_.get(), &TransportQueue::keyboardNotAnswering, this, [this] {
        showProblem([] { return appText(AppText::KeyboardNotAnswering); }, kNotAnsweringTopic);
    });
    connect(transport_.get(), &TransportQueue::uploadNotConfirmed, this, &MainController::uploadNotConfirmed);
}

MainController::~MainController()
{
    pollTimer_.stop();
    NotificationCenter::defaultCenter().removeObservers(this);
    if (monitorThread_) {
        monitorThread_->quit();
        monitorThread_->wait();
    }
    if (auto comm = currentTransport())
        comm->release();
    transport_.reset();
}

void MainController::viewDidLoad()
{
    initLocalData();
    InitUI();
    getKeyboardProfile();
}

void MainController::viewDidAppear()
{
    // A colour panel left open from before the window hid belongs to no
    // click the user can see.
    closeColorPanel();
    if (!hidDeviceInit) {
        hidDeviceInit = true;
        auto& center = NotificationCenter::defaultCenter();
        center.addObserver(HIDNotification::Connected, [this](const QVariant& o) { deviceConnected(o); }, this);
        center.addObserver(HIDNotification::Disconnected, [this](const QVariant& o) { deviceDisconnected(o); }, this);
        monitorThread_ = std::make_unique<HIDMonitorThread>(rfDeviceMonitor);
        monitorThread_->start();
    }
    registerNotification();
    if (window())
        window()->resize(kWindowWidth, kWindowHeight);
}

void MainController::viewDidDisappear()
{
    closeColorPanel();
}

void MainController::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    viewDidAppear();
}

void MainController::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    viewDidDisappear();
}

void MainController::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), QColor(0xf4, 0xf5, 0xf7));
    // Title row
    painter.fillRect(QRect(0, 0, width(), 56), QColor(0xff, 0xff, 0xff));
    painter.setPen(QColor(0xe3, 0xe6, 0xea));
    painter.drawLine(0, 56, width(), 56);
    painter.setPen(QColor::fromRgbF(0.05f, 0.05f, 0.05f));
    QFont title = font();
    title.setPointSizeF(13);
    title.setWeight(QFont::DemiBold);
    painter.setFont(title);
    painter.drawText(QRect(24, 0, 400, 56), Qt::AlignVCenter | Qt::AlignLeft, QStringLiteral("Orvane Keyboard Studio"));
}

std::optional<HIDDevice> MainController::connectedDevice() const
{
    std::lock_guard lock(sessionMutex_);
    return kbHIDdevice_;
}

std::optional<MainController::Announcement> MainController::announcement() const
{
    std::lock_guard lock(sessionMutex_);
    if (!kbHIDdevice_)
        return std::nullopt;
    return Announcement{*kbHIDdevice_, device_name_, announcedType_};
}

std::shared_ptr<DeviceComm> MainController::currentTransport() const
{
    std::lock_guard lock(sessionMutex_);
    return deviceComm_;
}

QString MainController::deviceName() const
{
    std::lock_guard lock(sessionMutex_);
    return device_name_;
}

