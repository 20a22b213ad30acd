-- Shows the console's datagrams in Wireshark and tshark: every field of every request and report, and the same
-- line as the console simulator prints.
--
-- Copy it into Wireshark's plugin folder (Help, About, Folders: Personal Lua Plugins), or for one run:
--   wireshark -X lua_script:tools/orvane-console.lua show.pcap
--   tshark    -X lua_script:tools/orvane-console.lua -r show.pcap -Y 'orvane_ec.key == 12'

local ec = Proto("orvane_ec", "Orvane console")
local malformed = ProtoExpert.new("orvane_ec.malformed", "Malformed", expert.group.MALFORMED, expert.severity.ERROR)
ec.experts = { malformed }

local SERVICE_PORT, CLIENT_PORT = 35555, 35556
local DOWN_MAGIC, UP_MAGIC = 0x55ee55ee, 0xee55ee55
local PACKET_TYPE, VERSION, NEVER_SENT = 1, 0x0100, 65535
local HEAD_SIZE, VALUE_OFFSET, LABEL_SIZE, RESOLUTIONS = 12, 16, 32, 32
local NUMBERING_SIZE, FILE_NAME_OFFSET, FIRST_DATA_TYPE = 4, 31, 1

local names = {
    state = { [0] = "LightUp", "Flashing", "CloseAllLight", [255] = "ClosedNormalLight" },
    direction = { [1] = "up", [64] = "down" },
    light = { [0] = "gooseneck", "front", "logo", [255] = "other" },
    source = { [0] = "dvi1", "arm_left" },
    moved = { [0] = "pressed", "released" },
    file_type = { [0] = "all", "mcu", "fpga" },
}

local tags = {
    [101] = "UpdateECButtonColor", [102] = "UpdateECOledText", [103] = "UpdateTBarValue", [104] = "LockTBar",
    [105] = "UnlockTBar", [106] = "ReadLockedTBar", [107] = "LockKeyboard", [108] = "UnlockKeyboard",
    [109] = "ReadLockedKeyboard", [110] = "ReadDVIInSignal", [111] = "ControlLight",
    [112] = "UpdateScreenLuminance", [113] = "ControlPeripheral", [114] = "ControlMVRSignal",
    [115] = "UpdateSystemTime", [116] = "UpdateNetworkInfo", [117] = "ReadFile", [118] = "WriteFile",
    [119] = "ReadECDeviceIPData", [120] = "UpdateECDeviceIPData", [121] = "RestartConsole",
    [122] = "ControlKeyboard", [123] = "UpdateDVISignalStatus", [124] = "ResetMCU", [125] = "ChangeIPMode",
    [126] = "ControlPeripheralState", [201] = "ReportECButtonPressed", [202] = "ReportECButtonRelease",
    [203] = "ReportECTBarValue", [204] = "ReportLockedTBar", [205] = "ReportLockedKeyboard",
    [206] = "ReportDVIInSignal", [207] = "ReportECDeviceIP",
}

local f = {
    magic = ProtoField.uint32("orvane_ec.magic", "Magic", base.HEX),
    packet_type = ProtoField.uint16("orvane_ec.packet_type", "Packet type"),
    version = ProtoField.uint16("orvane_ec.version", "Protocol version", base.HEX),
    seq = ProtoField.uint16("orvane_ec.seq", "Sequence"),
    content_length = ProtoField.uint16("orvane_ec.content_length", "Content length"),
    tag = ProtoField.uint16("orvane_ec.tag", "Tag", base.DEC, tags),
    length = ProtoField.uint16("orvane_ec.length", "Length"),
    line = ProtoField.string("orvane_ec.line", "Message"),
    key = ProtoField.uint32("orvane_ec.key", "Key"),
    label = ProtoField.uint16("orvane_ec.label", "Label"),
    app = ProtoField.uint32("orvane_ec.app", "Application's number"),
    state = ProtoField.uint8("orvane_ec.state", "State", base.DEC, names.state),
    red = ProtoField.uint8("orvane_ec.red", "Red"),
    green = ProtoField.uint8("orvane_ec.green", "Green"),
    blue = ProtoField.uint8("orvane_ec.blue", "Blue"),
    brightness = ProtoField.uint8("orvane_ec.brightness", "Brightness"),
    text = ProtoField.string("orvane_ec.text", "Text"),
    level = ProtoField.uint32("orvane_ec.level", "Level"),
    position = ProtoField.uint32("orvane_ec.position", "Position"),
    direction = ProtoField.uint8("orvane_ec.direction", "Direction", base.DEC, names.direction),
    moved = ProtoField.uint8("orvane_ec.moved", "Moved", base.DEC, names.moved),
    input = ProtoField.uint8("orvane_ec.input", "Input"),
    signal = ProtoField.bool("orvane_ec.signal", "Signal"),
    light = ProtoField.uint8("orvane_ec.light", "Light", base.DEC, names.light),
    on = ProtoField.bool("orvane_ec.on", "On"),
    locked = ProtoField.bool("orvane_ec.locked", "Locked"),
    visible = ProtoField.bool("orvane_ec.visible", "Visible"),
    screens = ProtoField.uint8("orvane_ec.screens", "Screens"),
    target = ProtoField.uint8("orvane_ec.target", "Target screen"),
    resolution = ProtoField.uint16("orvane_ec.resolution", "Width or height"),
    source = ProtoField.uint8("orvane_ec.source", "Source", base.DEC, names.source),
    index = ProtoField.uint8("orvane_ec.index", "Index"),
    status = ProtoField.uint8("orvane_ec.status", "Status"),
    address = ProtoField.ipv4("orvane_ec.address", "Address"),
    mask = ProtoField.ipv4("orvane_ec.mask", "Mask"),
    gateway = ProtoField.ipv4("orvane_ec.gateway", "Gateway"),
    mode = ProtoField.uint8("orvane_ec.mode", "Mode"),
    value = ProtoField.uint8("orvane_ec.value", "Value"),
    pack = ProtoField.uint16("orvane_ec.pack", "Pack"),
    packs = ProtoField.uint16("orvane_ec.packs", "Packs"),
    type = ProtoField.uint8("orvane_ec.type", "File type", base.DEC, names.file_type),
    size = ProtoField.uint32("orvane_ec.size", "File size"),
    reserved = ProtoField.uint32("orvane_ec.reserved", "Reserved"),
    name_length = ProtoField.uint16("orvane_ec.name_length", "Length of the name"),
    file = ProtoField.string("orvane_ec.file", "File"),
    bytes = ProtoField.uint32("orvane_ec.bytes", "Bytes of the file"),
    chunk = ProtoField.bytes("orvane_ec.chunk", "Chunk"),
}
local all = {}
for _, field in pairs(f) do all[#all + 1] = field end
ec.fields = all

-- Text -----------------------------------------------------------------------------------------------------------

-- Without a last character that is not whole.
local function whole_characters(bytes)
    for back = 1, math.min(4, #bytes) do
        local byte = bytes:byte(#bytes - back + 1)
        if byte < 0x80 then return bytes end
        if byte >= 0xc0 then
            local needed = byte >= 0xf0 and 4 or byte >= 0xe0 and 3 or 2
            return back < needed and bytes:sub(1, #bytes - back) or bytes
        end
    end
    return bytes
end

local function latin1_to_utf8(bytes)
    return (bytes:gsub("[\128-\255]", function(c)
        local byte = c:byte()
        return string.char(0xc0 + math.floor(byte / 64), 0x80 + byte % 64)
    end))
end

-- In quotes, with control characters as \xNN.
local function quoted(text)
    local shown = text:gsub("%c", function(c) return string.format("\\x%02x", c:byte()) end)
    -- the second set of control characters, as UTF-8 has it
    shown = shown:gsub("\194([\128-\159])", function(c) return string.format("\\x%02x", c:byte()) end)
    return '"' .. shown .. '"'
end

local function on_off(range) return range:uint() ~= 0 and "on" or "off" end

-- Values ---------------------------------------------------------------------------------------------------------

-- Walks over a value, adds its fields to the tree and keeps the text of each for the line.
local Reader = {}
Reader.__index = Reader

local function reader(tvb, offset, tree)
    return setmetatable({ tvb = tvb, offset = offset, tree = tree, shown = {}, fault = nil }, Reader)
end

function Reader:left() return self.tvb:len() - self.offset end

function Reader:take(size)
    local range = self.tvb(self.offset, size)
    self.offset = self.offset + size
    return range
end

local function add_number(self, name, size)
    local range = self:take(size)
    local number = range:le_uint()
    self.tree:add_le(f[name], range)
    self.shown[name] = names[name] and names[name][number] or tostring(number)
    return number
end

function Reader:u8(name) return add_number(self, name, 1) end
function Reader:u16(name) return add_number(self, name, 2) end
function Reader:u32(name) return add_number(self, name, 4) end

function Reader:flag(name)
    local range = self:take(1)
    self.tree:add(f[name], range)
    self.shown[name] = tostring(range:uint() ~= 0)
    return range
end

function Reader:ip(name)
    local range = self:take(4)
    self.tree:add_le(f[name], range)
    local number = range:le_uint()
    self.shown[name] = string.format("%d.%d.%d.%d", math.floor(number / 16777216) % 256,
        math.floor(number / 65536) % 256, math.floor(number / 256) % 256, number % 256)
end

function Reader:utf8(name, size)
    local range = self:take(size)
    local bytes = range:raw()
    local text = bytes:match("^[^%z]*")
    if bytes:sub(#text + 1):find("[^%z]") then self.fault = "label text goes on behind its terminating zero" end
    text = whole_characters(text)
    self.tree:add(f[name], range, text)
    self.shown[name] = quoted(text)
end

function Reader:latin1(name, size)
    local text = ""
    if size > 0 then
        local range = self:take(size)
        text = latin1_to_utf8(range:raw())
        self.tree:add(f[name], range, text)
    else
        self.tree:add(f[name], text):set_generated()
    end
    self.shown[name] = quoted(text)
end

function Reader:device_ip()
    self:u8("index")
    self:u8("status")
    self:ip("address")
    self:ip("mask")
    self:ip("gateway")
end

-- Requests -------------------------------------------------------------------------------------------------------

local function byte(name) return function(r) r:u8(name) end end
local function flag(name) return function(r) r:flag(name) end end
local function rest_as_text(r) r:latin1("text", r:left()) end

-- By tag: size of the value, empty for any; how it is read; what the line shows, in its order. `no_length`: the
-- length field says 0 all the same. `no_content`: the content length does not count the value.
local requests = {
    [101] = { size = 11, show = { "key", "app", "state", "color", "brightness" }, read = function(r)
        r:u32("app")
        r:u16("key")
        if not names.state[r:u8("state")] then r.fault = "button state" end
        r.shown.color = string.format("%d,%d,%d", r:u8("red"), r:u8("green"), r:u8("blue"))
        r:u8("brightness")
    end },
    [102] = { size = 38, show = { "label", "app", "text" }, read = function(r)
        r:u32("app")
        r:u16("label")
        r:utf8("text", LABEL_SIZE)
    end },
    [103] = { size = 5, show = { "level", "direction" }, read = function(r)
        r:u32("level")
        r:u8("direction")
    end },
    [110] = { size = 1, no_length = true, show = { "input" }, read = byte("input") },
    [111] = { size = 3, show = { "light", "on", "brightness" }, read = function(r)
        if not names.light[r:u8("light")] then r.fault = "light type" end
        r:flag("on")
        r:u8("brightness")
    end },
    [112] = { size = 1, show = { "brightness" }, read = byte("brightness") },
    [113] = { size = 66, show = { "screens", "target", "resolution" }, read = function(r)
        r:u8("screens")
        r:u8("target")
        local sides = {}
        for i = 1, RESOLUTIONS do sides[i] = tostring(r:u16("resolution")) end
        r.shown.resolution = table.concat(sides, ",")
    end },
    [114] = { size = 1, no_length = true, show = { "source" }, read = byte("source") },
    [115] = { show = { "text" }, read = rest_as_text },
    [116] = { show = { "text" }, read = rest_as_text },
    [119] = { size = 1, show = { "index" }, read = byte("index") },
    [120] = { size = 14, no_content = true, show = { "index", "status", "address", "mask", "gateway" },
        read = function(r) r:device_ip() end },
    [121] = { size = 1, show = { "value" }, read = byte("value") },
    [122] = { size = 1, show = { "on" }, read = flag("on") },
    [123] = { size = 2, show = { "input", "signal" }, read = function(r)
        r:u8("input")
        r:flag("signal")
    end },
    [124] = { size = 1, show = { "value" }, read = byte("value") },
    [125] = { size = 2, no_content = true, show = { "index", "mode" }, read = function(r)
        r:u8("index")
        r:u8("mode")
    end },
    [126] = { size = 1, show = { "visible" }, read = flag("visible") },
}
for tag = 104, 109 do requests[tag] = { size = 0, show = {}, read = function() end } end

local function line_of(seq, tag, show, shown)
    local words = { string.format("#%d %s", seq, tags[tag]) }
    for _, name in ipairs(show) do words[#words + 1] = name .. "=" .. shown[name] end
    return table.concat(words, " ")
end

-- Adds the head and what follows it; returns its numbers, and what is wrong with them.
local function add_head(tvb, offset, tree)
    local r = reader(tvb, offset, tree)
    r:u32("magic")
    local head = { packet_type = r:u16("packet_type"), version = r:u16("version"), seq = r:u16("seq"),
        content_length = r:u16("content_length"), tag = r:u16("tag"), length = r:u16("length") }
    if head.packet_type ~= PACKET_TYPE then return head, "packet type" end
    if head.version ~= VERSION then return head, "protocol version" end
    if head.seq == NEVER_SENT then return head, "sequence" end
    return head
end

local function dissect_request(tvb, tree)
    if tvb:len() < VALUE_OFFSET then return nil, "too few bytes" end
    local head, fault = add_head(tvb, 0, tree)
    if fault then return nil, fault end
    local request = requests[head.tag]
    if not request then return nil, tags[head.tag] and "a file pack without its pack numbering" or "unknown tag" end
    local size = tvb:len() - VALUE_OFFSET
    if request.size and size ~= request.size then return nil, "size of the value" end
    if head.length ~= (request.no_length and 0 or size) then return nil, "length" end
    local content = VALUE_OFFSET - HEAD_SIZE + (request.no_content and 0 or size)
    if head.content_length ~= content then return nil, "content length" end
    local r = reader(tvb, VALUE_OFFSET, tree)
    request.read(r)
    if r.fault then return nil, r.fault end
    return line_of(head.seq, head.tag, request.show, r.shown)
end

-- What stands before the first chunk of a file.
local function read_file_head(r, tag)
    if r.tvb:len() < FILE_NAME_OFFSET then return "too few bytes for a first pack" end
    local type = r:u8("type")
    r.shown.type = tostring(type)
    r:u32("size")
    local reserved = r:u32("reserved")
    local name_length = r:u16("name_length")
    if type > FIRST_DATA_TYPE then return "file type" end
    if tag ~= (type == FIRST_DATA_TYPE and 118 or 117) then return "tag of another file type" end
    if reserved ~= 0 then return "reserved word" end
    if name_length > r:left() then return "name goes beyond the end" end
    r:latin1("file", name_length)
end

local function dissect_file_pack(tvb, tree)
    if tvb:len() < NUMBERING_SIZE + VALUE_OFFSET then return nil, "too few bytes for a file pack" end
    local r = reader(tvb, 0, tree)
    local pack, packs = r:u16("pack"), r:u16("packs")
    local head, fault = add_head(tvb, NUMBERING_SIZE, tree)
    if fault then return nil, fault end
    if head.tag ~= 117 and head.tag ~= 118 then return nil, "tag in the layout of a file pack" end
    if head.length ~= 0 then return nil, "length" end
    if head.content_length ~= tvb:len() - HEAD_SIZE then return nil, "content length" end
    if pack >= packs then return nil, "pack index" end
    r.offset = NUMBERING_SIZE + VALUE_OFFSET
    local show = { "pack", "packs", "bytes" }
    if pack == 0 then
        fault = read_file_head(r, head.tag)
        if fault then return nil, fault end
        show = { "pack", "packs", "file", "type", "size", "bytes" }
    end
    local size = r:left()
    tree:add(f.bytes, size):set_generated()
    r.shown.bytes = tostring(size)
    if size > 0 then tree:add(f.chunk, r:take(size)) end
    return line_of(head.seq, head.tag, show, r.shown)
end

-- Reports --------------------------------------------------------------------------------------------------------

-- By tag: size of the value, and how it is read; what comes back is the line.
local function key_report(word)
    return { size = 5, read = function(r)
        r:u32("key")
        r:u8("moved")
        return word .. " " .. r.shown.key
    end }
end

local function lock_report(word)
    return { size = 1, read = function(r) return word .. " lock " .. on_off(r:flag("locked")) end }
end

local reports = {
    [201] = key_report("press"),
    [202] = key_report("release"),
    [203] = { size = 5, read = function(r)
        r:u32("position")
        local is_up = r:u8("direction") == 1
        return "tbar " .. r.shown.position .. (is_up and " up" or " down")
    end },
    [204] = lock_report("tbar"),
    [205] = lock_report("keypad"),
    [206] = { read = function(r)
        local line = "dvi"
        if r:left() % 2 ~= 0 then
            r.fault = "size of the value"
            return line
        end
        while r:left() > 0 do
            r:u8("input")
            line = line .. " " .. r.shown.input .. ":" .. on_off(r:flag("signal"))
        end
        return line
    end },
    [207] = { size = 14, read = function(r)
        r:device_ip()
        local s = r.shown
        return string.format("console-ip %s status %s address %s mask %s gateway %s", s.index, s.status, s.address,
            s.mask, s.gateway)
    end },
}

local function dissect_report(tvb, tree)
    if tvb:len() < VALUE_OFFSET then return nil, "too few bytes" end
    local head = add_head(tvb, 0, tree) -- of which the library reads the tag alone
    local report = reports[head.tag]
    if not report then return nil, "unknown tag" end
    local r = reader(tvb, VALUE_OFFSET, tree)
    if report.size and r:left() ~= report.size then return nil, "size of the value" end
    local line = report.read(r)
    if r.fault then return nil, r.fault end
    return line
end

-- --------------------------------------------------------------------------------------------------------------

local function magic_at(tvb, offset) return tvb:len() >= offset + 4 and tvb(offset, 4):le_uint() or nil end

function ec.dissector(tvb, pinfo, root)
    pinfo.cols.protocol = "ORVANE-EC"
    local tree = root:add(ec, tvb())
    local line, fault
    if pinfo.dst_port == CLIENT_PORT then
        if magic_at(tvb, 0) == UP_MAGIC then
            line, fault = dissect_report(tvb, tree)
        else
            fault = "no magic of a report"
        end
    elseif magic_at(tvb, 0) == DOWN_MAGIC then
        line, fault = dissect_request(tvb, tree)
    elseif magic_at(tvb, NUMBERING_SIZE) == DOWN_MAGIC then
        line, fault = dissect_file_pack(tvb, tree)
    else
        fault = "no magic of a request"
    end
    if line then
        tree:add(f.line, line):set_generated()
        tree:append_text(", " .. line)
        pinfo.cols.info = line
    else
        tree:add_proto_expert_info(malformed, "malformed, " .. fault)
        pinfo.cols.info = "malformed, " .. fault
    end
    return tvb:len()
end

local ports = DissectorTable.get("udp.port")
ports:add(SERVICE_PORT, ec)
ports:add(CLIENT_PORT, ec)
