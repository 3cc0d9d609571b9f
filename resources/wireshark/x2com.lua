-- Shows captures of itorv and itorvctl (--capture FILE) in Wireshark: frames, AIDs, and the names that the vehicle's
-- profile gives them. Copy it into Wireshark's folder of personal Lua plugins, or call
--   wireshark -X lua_script:x2com.lua FILE
-- The form of a capture, and of the link, is told in docs/capture.md and docs/link.md.

local x2com = Proto("x2com", "x2com link of a tuning module")

local kinds = { [0] = "from the module", [1] = "to the module", [2] = "note", [3] = "names" }
local types = { [0] = "write", [1] = "push A", [2] = "ack", [3] = "push B", [4] = "request", [5] = "response" }

local f = {
    kind = ProtoField.uint8("x2com.kind", "Kind", base.DEC, kinds),
    note = ProtoField.string("x2com.note", "Note"),
    names = ProtoField.string("x2com.names", "Names"),
    type = ProtoField.uint8("x2com.type", "Type", base.DEC, types, 0xF0),
    length = ProtoField.uint8("x2com.length", "Length", base.DEC, nil, 0x0F),
    aid = ProtoField.uint8("x2com.aid", "AID"),
    value = ProtoField.bytes("x2com.value", "Value"),
    name = ProtoField.string("x2com.name", "Name"),
    crc = ProtoField.uint8("x2com.crc", "CRC", base.HEX),
}
x2com.fields = { f.kind, f.note, f.names, f.type, f.length, f.aid, f.value, f.name, f.crc }

local e = {
    crc = ProtoExpert.new("x2com.crc.wrong", "The checksum is wrong", expert.group.CHECKSUM, expert.severity.ERROR),
    cut = ProtoExpert.new("x2com.cut", "The frame is not whole", expert.group.MALFORMED, expert.severity.ERROR),
}
x2com.experts = { e.crc, e.cut }

-- What each AID is called: a packet of names holds from its number on, until the next one.
local tables = {}
local names = {}
function x2com.init() tables = {} end
local function names_at(number)
    local last = 0
    for begin in pairs(tables) do
        if begin <= number and begin > last then last = begin end
    end
    return tables[last] or {}
end

-- SAE J1850: polynomial 0x1D, preset 0xFF, complemented.
local function crc8(bytes, count)
    local crc = 0xFF
    for i = 0, count - 1 do
        crc = bit.bxor(crc, bytes(i, 1):uint())
        for _ = 1, 8 do
            crc = bit.band(crc, 0x80) ~= 0 and bit.bxor(bit.lshift(crc, 1), 0x1D) or bit.lshift(crc, 1)
            crc = bit.band(crc, 0xFF)
        end
    end
    return bit.bxor(crc, 0xFF)
end

local function width(aid, first)
    if aid <= 74 then return 1 elseif aid <= 149 then return 2 elseif aid <= 184 then return 3 elseif aid <= 219 then
        return 4
    end
    return first
end

local function label(aid)
    return names[aid] and aid .. " " .. names[aid] or tostring(aid)
end

-- One item at a time: the AID, and its value unless it is a list of AIDs alone.
local function items(payload, tree, is_list)
    local shown = {}
    local at = 0
    while at < payload:len() do
        local aid = payload(at, 1):uint()
        local length = 0
        if not is_list then
            local first = at + 1 < payload:len() and payload(at + 1, 1):uint() or 0
            length = math.min(width(aid, first), payload:len() - at - 1)
        end
        local item = tree:add(payload(at, 1 + length), "AID " .. label(aid))
        item:add(f.aid, payload(at, 1))
        if names[aid] then item:add(f.name, payload(at, 1), names[aid]):set_generated() end
        if length > 0 then item:add(f.value, payload(at + 1, length)) end
        shown[#shown + 1] = label(aid) .. (length > 0 and "=" .. tostring(payload(at + 1, length):bytes()):lower() or "")
        at = at + 1 + length
    end
    return table.concat(shown, ", ")
end

local function frame(bytes, pinfo, tree)
    local kind = bit.rshift(bytes(0, 1):uint(), 4)
    local length = bit.band(bytes(0, 1):uint(), 15)
    tree:add(f.type, bytes(0, 1))
    tree:add(f.length, bytes(0, 1))
    local text = types[kind] or "type " .. kind
    if length == 0 or bytes:len() <= length then
        tree:add_proto_expert_info(e.cut)
        return text .. " (not whole)"
    end
    local list = ""
    if length > 1 then list = "  " .. items(bytes(1, length - 1), tree, kind == 2 or kind == 4) end
    local crc = tree:add(f.crc, bytes(length, 1))
    if crc8(bytes, length) ~= bytes(length, 1):uint() then
        crc:add_proto_expert_info(e.crc)
        text = text .. " (checksum wrong)"
    end
    return text .. list
end

function x2com.dissector(buffer, pinfo, root)
    if buffer:len() < 1 then return 0 end
    pinfo.cols.protocol = "x2com"
    local tree = root:add(x2com, buffer())
    local kind = buffer(0, 1):uint()
    tree:add(f.kind, buffer(0, 1))
    if kind == 3 then
        local told = {}
        if buffer:len() > 1 then
            tree:add(f.names, buffer(1))
            for aid, name in buffer(1):string():gmatch("(%d+)\t([^\n]*)\n") do told[tonumber(aid)] = name end
        end
        tables[pinfo.number] = told
        pinfo.cols.info = "names of the vehicle's AIDs"
    elseif kind == 2 then
        local note = buffer:len() > 1 and buffer(1):string() or ""
        if buffer:len() > 1 then tree:add(f.note, buffer(1)) end
        pinfo.cols.info = note
    elseif buffer:len() > 1 then
        names = names_at(pinfo.number)
        pinfo.cols.src = kind == 0 and "module" or "handset"
        pinfo.cols.dst = kind == 0 and "handset" or "module"
        pinfo.cols.info = frame(buffer(1):tvb(), pinfo, tree)
    end
    return buffer:len()
end

-- Link type 147, which is free for everyone's own use.
DissectorTable.get("wtap_encap"):add(wtap.USER0, x2com)
