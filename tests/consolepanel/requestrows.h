#pragma once

#include <QByteArray>

#include <vector>

namespace PanelTest {

/// A request byte for byte, and what the console panel says of it.
struct RequestRow {
    const char* name;
    QByteArray hex;
    const char* line;
};

inline QByteArray zeros(int count)
{
    return QByteArray(count * 2, '0');
}

/// Every request that the library sends, with what may be odd in one.
inline const std::vector<RequestRow>& requestRows()
{
    static const std::vector<RequestRow> s_rows{
        {"101 a key lit green", "ee55ee5501000001 0100 0f00 6500 0b00 f4030000 0c00 00 00ff00 64",
         "#1 UpdateECButtonColor key=12 app=1012 state=LightUp color=0,255,0 brightness=100"},
        {"101 all LEDs closed", "ee55ee5501000001 feff 0f00 6500 0b00 ff000000 ff00 02 000000 00",
         "#65534 UpdateECButtonColor key=255 app=255 state=CloseAllLight color=0,0,0 brightness=0"},
        {"102 a label", "ee55ee5501000001 0200 2a00 6600 2600 00020000 0102 50616765203100" + zeros(25),
         "#2 UpdateECOledText label=513 app=512 text=\"Page 1\""},
        {"102 a label cut within a character",
         "ee55ee5501000001 0200 2a00 6600 2600 00020000 0102 " + QByteArray(30, 'a').toHex() + "e282",
         "#2 UpdateECOledText label=513 app=512 text=\"aaaaaaaaaaaaaaaaaaaaaaaaaaaaaa\""},
        {"103 a T-Bar level", "ee55ee5501000001 0300 0900 6700 0500 06000000 01",
         "#3 UpdateTBarValue level=6 direction=up"},
        {"104", "ee55ee5501000001 0400 0400 6800 0000", "#4 LockTBar"},
        {"105", "ee55ee5501000001 0400 0400 6900 0000", "#4 UnlockTBar"},
        {"106", "ee55ee5501000001 0400 0400 6a00 0000", "#4 ReadLockedTBar"},
        {"107", "ee55ee5501000001 0400 0400 6b00 0000", "#4 LockKeyboard"},
        {"108", "ee55ee5501000001 0400 0400 6c00 0000", "#4 UnlockKeyboard"},
        {"109", "ee55ee5501000001 0400 0400 6d00 0000", "#4 ReadLockedKeyboard"},
        {"110 carries a byte its length denies", "ee55ee5501000001 0500 0500 6e00 0000 03",
         "#5 ReadDVIInSignal input=3"},
        {"111", "ee55ee5501000001 0600 0700 6f00 0300 01 01 0a",
         "#6 ControlLight light=front on=true brightness=10"},
        {"112", "ee55ee5501000001 0700 0500 7000 0100 64", "#7 UpdateScreenLuminance brightness=100"},
        {"113", "ee55ee5501000001 0800 4600 7100 4200 02 01 8007 3804" + zeros(60),
         "#8 ControlPeripheral screens=2 target=1 resolution=1920,1080"
         ",0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0"},
        {"114 carries a byte its length denies", "ee55ee5501000001 0900 0500 7200 0000 01",
         "#9 ControlMVRSignal source=arm_left"},
        {"115", "ee55ee5501000001 0a00 0900 7300 0500 30373a3038", "#10 UpdateSystemTime text=\"07:08\""},
        {"115 without a text", "ee55ee5501000001 0a00 0400 7300 0000", "#10 UpdateSystemTime text=\"\""},
        {"116 with a line end", "ee55ee5501000001 0b00 0700 7400 0300 61400a",
         "#11 UpdateNetworkInfo text=\"a@\\x0a\""},
        {"119", "ee55ee5501000001 0c00 0500 7700 0100 02", "#12 ReadECDeviceIPData index=2"},
        {"120 counts the tag only", "ee55ee5501000001 0d00 0400 7800 0e00 00 01 0a00a8c0 00ffffff 0100a8c0",
         "#13 UpdateECDeviceIPData index=0 status=1 address=192.168.0.10 mask=255.255.255.0 "
         "gateway=192.168.0.1"},
        {"121", "ee55ee5501000001 0e00 0500 7900 0100 01", "#14 RestartConsole value=1"},
        {"122", "ee55ee5501000001 0f00 0500 7a00 0100 01", "#15 ControlKeyboard on=true"},
        {"123", "ee55ee5501000001 1000 0600 7b00 0200 01 00",
         "#16 UpdateDVISignalStatus input=1 signal=false"},
        {"124", "ee55ee5501000001 1100 0500 7c00 0100 01", "#17 ResetMCU value=1"},
        {"125 counts the tag only", "ee55ee5501000001 1200 0400 7d00 0200 01 02",
         "#18 ChangeIPMode index=1 mode=2"},
        {"126", "ee55ee5501000001 0000 0500 7e00 0100 01", "#0 ControlPeripheralState visible=true"},
        {"118 first pack of a microcontroller's file",
         "0000 0300 ee55ee5501000001 1300 1a00 7600 0000 01 0a000000 00000000 0300 612e62 01020304",
         "#19 WriteFile pack=0 packs=3 file=\"a.b\" type=1 size=10 bytes=4"},
        {"117 first pack of another file",
         "0000 0100 ee55ee5501000001 1300 1400 7500 0000 00 00000000 00000000 0100 61",
         "#19 ReadFile pack=0 packs=1 file=\"a\" type=0 size=0 bytes=0"},
        {"118 data pack", "0200 0300 ee55ee5501000001 1500 0a00 7600 0000 0506",
         "#21 WriteFile pack=2 packs=3 bytes=2"},
        {"117 data pack without data", "0200 0300 ee55ee5501000001 1500 0800 7500 0000",
         "#21 ReadFile pack=2 packs=3 bytes=0"},
    };
    return s_rows;
}

} // namespace PanelTest
