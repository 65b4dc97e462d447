// Calls by name: the results of all working members, and type libraries that are missing or damaged.

#include "support/call_table.h"
#include "support/type_library_file.h"

#include <QtCore/QDir>

namespace
{

using namespace keltest;

using LateBound = DomTest;

TEST_F(LateBound, EveryMemberReturnsWhatIsListedAndLeaksNothing)
{
    ASSERT_TRUE(QDir::setCurrent(pathOf("")));
    expectNoLeaks([] {
        CallTable calls;
        forEachRow(KEL_TESTS "late_bound_calls.txt", [&](Row row) { calls.call(row); });
    });
}

TEST_F(LateBound, FailuresToLoadTheTypeLibraryAreReturnedAndTheNextCallTriesAgain)
{
    const auto document = newDocument();
    UINT count = 7;
    EXPECT_EQ(S_OK, document->GetTypeInfoCount(&count));
    EXPECT_EQ(1u, count);
    EXPECT_EQ(E_POINTER, document->GetTypeInfoCount(nullptr));
    EXPECT_EQ(DISP_E_BADINDEX, document->GetTypeInfo(1, 0, nullptr));
    EXPECT_EQ(E_POINTER, document->GetTypeInfo(0, 0, nullptr));

    wchar_t load[] = L"load", unknown[] = L"lode", *names[] = {load, unknown};
    std::array<DISPID, 2> identifiers{};
    ComPtr<ITypeInfo> first, second;
    const auto expectFailure = [&](HRESULT expected) {
        EXPECT_EQ(expected, document->GetTypeInfo(0, 0, first.put()));
        EXPECT_EQ(expected, document->GetIDsOfNames(IID_IUnknown, names, 1, 0, identifiers.data()));
        EXPECT_EQ(expected, document->Invoke(2, IID_IUnknown, 0, DISPATCH_PROPERTYGET, nullptr, nullptr,
                                             nullptr, nullptr));
        EXPECT_FALSE(first);
    };
    ASSERT_EQ(S_OK, KelTypelib::UnRegisterTypeLib(LIBID_MSXML));
    expectFailure(TYPE_E_LIBNOTREGISTERED);
    const TypeLibraryFile file("damaged");
    ASSERT_EQ(S_OK, KelTypelib::RegisterTypeLib(LIBID_MSXML, file.widePath.c_str()));
    expectFailure(TYPE_E_INVDATAREAD);
    QFile::remove(file.path);
    expectFailure(TYPE_E_CANTLOADLIBRARY);
    file.write(stamped(contentOf(QStringLiteral(KEL_TESTS "invoke_library.xml"))));
    expectFailure(TYPE_E_ELEMENTNOTFOUND);
    QByteArray library = contentOf(QStringLiteral(KEL_TYPE_LIBRARY));
    library.remove(0, library.indexOf("<identity"));
    const int end = library.indexOf("</interface>", library.indexOf("onreadystatechange"));
    file.write(stamped(library.insert(end, "<member name='beyond' id='999' kind='method'/>")));
    file.registerAgain();
    expectFailure(TYPE_E_ELEMENTNOTFOUND);
    SetUpTestSuite();
    EXPECT_EQ(S_OK, document->GetTypeInfo(0, 0, first.put()));
    EXPECT_EQ(S_OK, document->GetTypeInfo(0, 0, second.put()));
    EXPECT_EQ(first.get(), second.get());

    EXPECT_EQ(DISP_E_UNKNOWNNAME, document->GetIDsOfNames(IID_IUnknown, names, 2, 0, identifiers.data()));
    EXPECT_EQ((std::array<DISPID, 2>{58, -1}), identifiers);
}

} // namespace
