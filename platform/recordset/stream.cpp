#include "stream.h"

#include "failures.h"

namespace recordset {

namespace {

constexpr std::int64_t Unit_Size = sizeof(char16_t);

class Text_Stream final : public automation::Object<Stream> {
public:
    void Open() override {
        if (open)
            Fail(Stream_Program_Identity, number::Object_Open);
        open = true;
    }

    void Close() override {
        Require_Open();
        open = false;
        text = String();
        lent = {};
        at = 0;
    }

    void Write_Text(String_View written) override {
        Require_Open();
        if (!lent.empty()) { // from now on it is the stream's own
            text = String(lent);
            lent = {};
        }
        text.replace(at, written.size(), written); // what reaches beyond the end extends the text
        at += written.size();
    }

    void Borrow_Text(String_View whole) override {
        if (Size() > 0)
            Fail(Stream_Program_Identity, number::Wrong_Arguments);
        lent = whole;
        at = whole.size();
    }

    std::int64_t Position() const override {
        Require_Open();
        return Bytes(at);
    }

    void Set_Position(std::int64_t position) override {
        if (position < 0 || position > Size() || position % Unit_Size != 0)
            Fail(Stream_Program_Identity, number::Wrong_Arguments);
        at = static_cast<std::size_t>(position / Unit_Size);
    }

    std::int64_t Size() const override {
        Require_Open();
        return Bytes(Content().size());
    }

    String_View Rest() const override {
        Require_Open();
        return Content().substr(at);
    }

private:
    static std::int64_t Bytes(std::size_t units) { return static_cast<std::int64_t>(units) * Unit_Size; }

    void Require_Open() const {
        if (!open)
            Fail(Stream_Program_Identity, number::Object_Closed);
    }

    String_View Content() const { return lent.empty() ? String_View(text) : lent; }

    bool open = false;
    String text;
    String_View lent; // instead of a text of its own
    std::size_t at = 0;
};

} // namespace

automation::Reference<Stream> Make_Stream() {
    return automation::Make_Object<Text_Stream>();
}

} // namespace recordset
