// Checks the model in memory, with a show of yours, against the rules for models. Copy it and put your own
// model in the place of the one in memory.
#include "arguments.h"
#include "memorymodel.h"
#include "modelcheck.h"
#include "modelcheckprogram.h"

#include <QCoreApplication>

#include <memory>

namespace {

class ShowFixture final : public Orvane::ModelTest::ModelFixture {
public:
    explicit ShowFixture(QString showFile)
        : m_strShowFile(std::move(showFile))
    {
    }

    bool create(QString& error) override
    {
        m_pModel = std::make_unique<Orvane::MemoryModel::MemoryModel>();
        QStringList faults;
        const bool ok = m_pModel->loadFile(m_strShowFile, faults);
        m_pModel->setShowFile({}); // saving is checked, the show is not written
        error = faults.join(QLatin1Char('\n'));
        return ok;
    }
    void destroy() override { m_pModel.reset(); }

private:
    const QString m_strShowFile;
    std::unique_ptr<Orvane::MemoryModel::MemoryModel> m_pModel;
};

} // namespace

int main(int argc, char** argv)
{
    const auto read = Orvane::CommandLine::readArguments(modelCheckProgram(), argc, argv);
    if (const auto* status = std::get_if<Orvane::CommandLine::ExitStatus>(&read))
        return *status;
    const QCoreApplication app(argc, argv);
    ShowFixture fixture(std::get<Orvane::CommandLine::Arguments>(read).argument(0));
    return Orvane::ModelTest::checkModelMain(fixture);
}
