#include "model/EntriesFile.h"

#include <nlohmann/json.hpp>

using namespace Qt::StringLiterals;

namespace
{
/// More than a list of 300,000 entries takes.
constexpr qint64 maxListBytes = 64LL * 1024 * 1024;

Error noPlace()
{
    return {u"There is no folder for the data of programs."_s};
}
} // namespace

EntriesFile::EntriesFile(const QString &applicationSupport)
    : m_hasPlace(!applicationSupport.isEmpty())
    , m_file(applicationSupport + u"/Corvane/entries.json"_s, maxListBytes)
{
}

Result<QList<LaunchEntry>> EntriesFile::read()
{
    auto entries = readList();
    if (!entries)
        m_file.keepBeforeWriting();
    return entries;
}

Result<QList<LaunchEntry>> EntriesFile::readList() const
{
    if (!m_hasPlace)
        return noPlace();
    if (const auto error = m_file.makeFolder())
        return *error;
    const auto text = m_file.read();
    if (!text)
        return text.error();
    if (!*text)
        return QList<LaunchEntry>();
    const auto json = JsonCoding::parse(**text);
    if (!json)
        return json.error();
    return LaunchEntry::listFromJson(*json);
}

std::optional<Error> EntriesFile::write(const QList<LaunchEntry> &entries)
{
    if (!m_hasPlace)
        return noPlace();
    OrderedJson list = OrderedJson::array();
    for (const LaunchEntry &entry : entries)
        list.push_back(entry.toJson());
    return m_file.write(JsonCoding::write(list));
}
