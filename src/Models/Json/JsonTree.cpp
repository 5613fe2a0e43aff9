#include "Models/Json/JsonTree.h"

#include "Models/Json/JsonParsing.h"
#include "Models/Json/JsonScalars.h"

#include <QJsonArray>
#include <QJsonObject>

#include <vector>

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

/// A container whose end has not come yet.
struct OpenContainer
{
    bool isArray = false;
    QJsonArray array;
    QJsonObject object;
    QString key; ///< of the object's next value
};

/// Handler of parseJson().
class TreeBuilder
{
public:
    const QJsonValue &root() const { return m_root; }

    void beginObject(const char *) { m_open.emplace_back(); }
    void key(std::string_view key) { m_open.back().key = textFromJson(key); }
    void endObject(const char *) { close(); }
    void beginArray() { m_open.emplace_back().isArray = true; }
    void endArray() { close(); }
    void string(std::string_view text) { add(textFromJson(text)); }
    void boolean(bool value) { add(value); }
    void null() { add(QJsonValue::Null); }

    void number(std::string_view text)
    {
        if (const auto whole = wholeNumberFromJson(text))
            return add(*whole);
        const auto value = doubleFromJson(text);
        if (!value)
            throw JsonDecodingError(u"A number is out of range."_s);
        add(*value);
    }

private:
    void close()
    {
        const OpenContainer container = std::move(m_open.back());
        m_open.pop_back();
        if (container.isArray)
            add(container.array);
        else
            add(container.object);
    }

    void add(const QJsonValue &value)
    {
        if (m_open.empty())
            m_root = value;
        else if (m_open.back().isArray)
            m_open.back().array.append(value);
        else
            m_open.back().object.insert(m_open.back().key, value);
    }

    std::vector<OpenContainer> m_open;
    QJsonValue m_root;
};

} // namespace

QJsonValue jsonTree(const QByteArray &document)
{
    TreeBuilder builder;
    parseJson(document, builder);
    return builder.root();
}

} // namespace kestrova
