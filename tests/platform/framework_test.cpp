#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "korvel/platform/framework.h"
#include "tests/support/extension_chain.h"

using korvel::test::chain;

namespace {

TEST(MessageBox, GoesToTheInstalledHandler) {
    std::vector<std::string> shown;
    const int answer = 6;
    auto before = korvel::set_message_box_handler([&](const char* text, unsigned type) {
        shown.push_back(std::to_string(type) + text);
        return answer;
    });
    EXPECT_FALSE(before);
    EXPECT_EQ(AfxMessageBox("first"), answer);
    EXPECT_EQ(AfxMessageBox(nullptr, 4), answer);
    EXPECT_EQ(shown, (std::vector<std::string>{"0first", "4"}));

    // A handler may take itself away while it runs, and comes back as the one before.
    auto recorder = korvel::set_message_box_handler([&](const char* text, unsigned) {
        korvel::set_message_box_handler(nullptr);
        shown.push_back(text);
        return answer + 1;
    });
    EXPECT_EQ(AfxMessageBox("last"), answer + 1);
    EXPECT_EQ(shown.back(), "last");
    EXPECT_EQ(recorder("direct", 1), answer);
    EXPECT_EQ(shown.back(), "1direct");
}

TEST(MessageBox, GoesToStandardErrorWithoutHandler) {
    korvel::set_message_box_handler(nullptr);
    testing::internal::CaptureStderr();
    EXPECT_EQ(AfxMessageBox("100 %s"), IDOK);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "100 %s\n");
}

TEST(MessageBox, GoesToTheLastOverrideOfItsThread) {
    std::string shown;
    const auto to = [&](const char* name) {
        return [&shown, name](const char* text, unsigned) {
            shown += std::string(name) + text + ' ';
            return IDOK;
        };
    };
    korvel::set_message_box_handler(to("all"));
    auto outer = std::make_unique<korvel::MessageBoxOverride>(to("outer"));
    AfxMessageBox("1");
    std::thread([] { AfxMessageBox("2"); }).join();
    auto inner = std::make_unique<korvel::MessageBoxOverride>(to("inner"));
    AfxMessageBox("3");
    outer.reset(); // out of order
    AfxMessageBox("4");
    inner.reset();
    AfxMessageBox("5");
    EXPECT_EQ(shown, "outer1 all2 inner3 inner4 all5 ");
    korvel::set_message_box_handler(nullptr);
}

TEST(ExtensionModule, JoinsAndLeavesTheChain) {
    const std::vector<HINSTANCE> start = chain();
    auto with = [&](std::vector<HINSTANCE> front) {
        front.insert(front.end(), start.begin(), start.end());
        return front;
    };
    int objects[2] = {};
    const auto a = reinterpret_cast<HINSTANCE>(&objects[0]);
    const auto b = reinterpret_cast<HINSTANCE>(&objects[1]);
    AFX_EXTENSION_MODULE first;
    AFX_EXTENSION_MODULE second;
    EXPECT_NE(AfxInitExtensionModule(first, a), 0);
    EXPECT_NE(AfxInitExtensionModule(second, b), 0);
    EXPECT_NE(AfxInitExtensionModule(first, b), 0);
    EXPECT_EQ(first.hModule, a);

    CDynLinkLibrary library_a(first);
    {
        CDynLinkLibrary library_b(second);
        CDynLinkLibrary library_a2(first);
        EXPECT_EQ(chain(), with({a, b, a}));
        AfxTermExtensionModule(first);
        EXPECT_EQ(chain(), with({b}));
        EXPECT_EQ(first.bInitialized, 0);
        EXPECT_EQ(first.hModule, nullptr);
        AfxTermExtensionModule(first);
        EXPECT_EQ(chain(), with({b}));
    }
    EXPECT_EQ(chain(), start);

    CDynLinkLibrary outer(second);
    { CDynLinkLibrary inner(second); }
    EXPECT_EQ(chain(), with({b}));
    AfxTermExtensionModule(second);
    EXPECT_EQ(chain(), start);
}

TEST(Colour, PacksRedLowest) {
    EXPECT_EQ(RGB(1, 2, 3), 0x030201u);
    EXPECT_EQ(RGB(256, 255, -1), 0xffff00u);
    const COLORREF colour = 0x563412;
    EXPECT_EQ(GetRValue(colour), 0x12);
    EXPECT_EQ(GetGValue(colour), 0x34);
    EXPECT_EQ(GetBValue(colour), 0x56);
}

TEST(DrawingTools, AreCreatedAndDestroyed) {
    CPen pen(2, 5, RGB(10, 20, 30));
    EXPECT_EQ(pen.colour, RGB(10, 20, 30));
    EXPECT_NE(pen.CreatePen(PS_SOLID, 3, RGB(255, 0, 0)), 0);
    EXPECT_EQ(pen.style, PS_SOLID);
    EXPECT_EQ(pen.width, 3);
    EXPECT_NE(pen.DeleteObject(), 0);
    EXPECT_EQ(pen.colour, RGB(0, 0, 0));

    CBrush brush;
    EXPECT_NE(brush.CreateSolidBrush(RGB(0, 9, 0)), 0);
    EXPECT_EQ(brush.colour, RGB(0, 9, 0));
    EXPECT_NE(brush.DeleteObject(), 0);
    EXPECT_EQ(brush.colour, RGB(255, 255, 255));
}

} // namespace
