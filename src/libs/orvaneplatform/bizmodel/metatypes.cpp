#include "bizmodel/metatypes.h"

#include <QList>

namespace Orvane::BizModel {

namespace {

/// Registers the type under its own name and under the one given.
template <typename T> void registerAs(const char* name)
{
    qRegisterMetaType<T>();
    qRegisterMetaType<T>(name);
}

} // namespace

#define ORVANE_REGISTER(...) registerAs<__VA_ARGS__>(#__VA_ARGS__)

void registerPlatformMetaTypes()
{
    ORVANE_REGISTER(std::weak_ptr<Orvane::BizModel::Connector>);
    ORVANE_REGISTER(std::weak_ptr<Orvane::BizModel::Device>);
    ORVANE_REGISTER(std::weak_ptr<Orvane::BizModel::File>);
    ORVANE_REGISTER(std::weak_ptr<Orvane::BizModel::Input>);
    ORVANE_REGISTER(std::weak_ptr<Orvane::BizModel::Interface>);
    ORVANE_REGISTER(std::weak_ptr<Orvane::BizModel::Layer>);
    ORVANE_REGISTER(std::weak_ptr<Orvane::BizModel::Preset>);
    ORVANE_REGISTER(std::weak_ptr<Orvane::BizModel::Screen>);
    ORVANE_REGISTER(std::weak_ptr<Orvane::BizModel::Subcard>);
    ORVANE_REGISTER(std::shared_ptr<Orvane::BizModel::Device>);
    ORVANE_REGISTER(std::shared_ptr<Orvane::BizModel::Input>);
    ORVANE_REGISTER(std::shared_ptr<Orvane::BizModel::Layer>);
    ORVANE_REGISTER(std::shared_ptr<Orvane::BizModel::Preset>);
    ORVANE_REGISTER(std::shared_ptr<Orvane::BizModel::Screen>);
    ORVANE_REGISTER(QList<std::weak_ptr<Orvane::BizModel::Screen>>);
    ORVANE_REGISTER(Orvane::BizModel::StatusBarMsgType);
    ORVANE_REGISTER(Orvane::BizModel::FramelessMessageBoxMsgType);
    ORVANE_REGISTER(QMessageBox::StandardButton);
}

#undef ORVANE_REGISTER

} // namespace Orvane::BizModel
