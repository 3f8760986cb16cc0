#include "link/RealSerialLine.h"

#include <QFileInfo>

namespace marisonde {

namespace {

using Kind = LineError::Kind;

/// One answer of the system stands for both "another program has it" and "you may not".
Kind RefusalKind(const QString& device) {
    const QFileInfo file(device);
    const bool mayUse = !file.exists() || (file.isReadable() && file.isWritable());
    return mayUse ? Kind::Busy : Kind::Denied;
}

Kind OpenFailureKind(QSerialPort::SerialPortError error, const QString& device) {
    switch (error) {
        case QSerialPort::DeviceNotFoundError:
            return Kind::NotFound;
        case QSerialPort::PermissionError:
            return RefusalKind(device);
        default:
#ifndef Q_OS_WIN
            if (!QFileInfo::exists(device)) return Kind::NotFound;
#endif
            return Kind::Other;
    }
}

bool MeansGone(QSerialPort::SerialPortError error) {
    return error == QSerialPort::ResourceError || error == QSerialPort::ReadError ||
           error == QSerialPort::WriteError || error == QSerialPort::DeviceNotFoundError;
}

void AppendBytes(std::string& out, const QByteArray& bytes) {
    out.append(bytes.constData(), static_cast<std::size_t>(bytes.size()));
}

}  // namespace

RealSerialLine::~RealSerialLine() {
    Close();
}

LineError RealSerialLine::Open(int port, int baud) {
    Close();
    lastError_ = {};
    auto entry = ports_.Find(port);
    if (!entry) {
        ports_.Refresh();
        entry = ports_.Find(port);
    }
    if (!entry) return lastError_ = {Kind::NotFound, "There is no port " + std::to_string(port)};

    const QString device = QString::fromStdString(entry->device);
    auto opened = std::make_unique<QSerialPort>(device);
    opened->setBaudRate(baud);
    if (!opened->open(QIODevice::ReadWrite))
        return lastError_ = {OpenFailureKind(opened->error(), device), opened->errorString().toStdString()};
    // Interfaces that take their power from the port need it; lines without modem signals refuse, harmlessly.
    opened->setDataTerminalReady(true);
    opened->clearError();
    port_ = std::move(opened);
    QObject::connect(port_.get(), &QSerialPort::errorOccurred, port_.get(),
                     [this](QSerialPort::SerialPortError error) { OnError(error); });
    return {};
}

void RealSerialLine::Close() {
    lastBytes_.clear();
    if (!port_) return;
    port_->disconnect();
    if (port_->isOpen()) {
        port_->flush();
        port_->close();
    }
    port_.reset();
}

bool RealSerialLine::IsOpen() const {
    return Works() || !lastBytes_.empty();
}

void RealSerialLine::SetRate(int baud) {
    if (Works()) port_->setBaudRate(baud);
}

void RealSerialLine::ReadAll(std::string& out) {
    if (Works()) AppendBytes(out, port_->readAll());
    out += lastBytes_;
    lastBytes_.clear();
}

void RealSerialLine::Write(std::string_view bytes) {
    if (Works()) port_->write(bytes.data(), static_cast<qint64>(bytes.size()));
}

std::size_t RealSerialLine::BytesToWrite() const {
    return Works() ? static_cast<std::size_t>(port_->bytesToWrite()) : 0;
}

std::size_t RealSerialLine::BytesToRead() const {
    return Works() ? static_cast<std::size_t>(port_->bytesAvailable()) : lastBytes_.size();
}

void RealSerialLine::DropInput() {
    lastBytes_.clear();
    if (Works()) port_->clear(QSerialPort::Input);
}

void RealSerialLine::SetBreak(bool on) {
    if (Works()) port_->setBreakEnabled(on);
}

void RealSerialLine::OnError(QSerialPort::SerialPortError error) {
    if (error == QSerialPort::NoError) return;
    const std::string reason = port_->errorString().toStdString();
    if (!MeansGone(error)) {
        lastError_ = {Kind::Other, reason};
        return;
    }
    AppendBytes(lastBytes_, port_->readAll());
    lastError_ = {Kind::Gone, reason};
    port_->disconnect();
    // Not deleted here: the port is in the middle of telling us.
    port_.release()->deleteLater();
}

}  // namespace marisonde
