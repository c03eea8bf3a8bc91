-- Dissector of NPA packets, which hosts exchange with the wireless adapter of a printer, in bulk
-- transfers of USB:
--
--     wireshark -X lua_script:npa.lua CAPTURE        (or in Wireshark's folder of personal plugins)
--
-- The tables are those of the program: `zvknpa --objects` lists them, and so does
-- `tshark -G currentprefs -X lua_script:npa.lua -X lua_script1:objects`; a test compares the two.

local groups = {
  [0x06] = "adapter", [0x0A] = "network address", [0x28] = "wireless network", [0x2A] = "802.1x",
}

-- Group, object, kind of the value, name, what its numbers mean from 0 on.
local settings = {
  { 0x06, 0x14, "flag", "adapter reset" },
  { 0x06, 0x1F, "text", "adapter descriptor" },
  { 0x0A, 0x02, "address", "IP address" },
  { 0x28, 0x02, "number", "mode", { "managed", "ad-hoc" } },
  { 0x28, 0x05, "number", "channel" },
  { 0x28, 0x08, "text", "SSID" },
  { 0x28, 0x09, "text", "WEP key 1" },
  { 0x28, 0x0B, "text", "WEP key 2" },
  { 0x28, 0x0D, "text", "WEP key 3" },
  { 0x28, 0x0F, "text", "WEP key 4" },
  { 0x28, 0x11, "text", "pre-shared key" },
  { 0x28, 0x15, "number", "trouble code" },
  { 0x28, 0x1F, "number", "WEP transmit key" },
  { 0x28, 0x22, "number", "security", { "none", "WEP", "WPA (1 or 2)", "802.1x", "WPA2 only" } },
  { 0x28, 0x23, "number", "WEP authentication", { "auto", "open", "shared" } },
  { 0x28, 0x26, "number", "encryption", { "none", "dynamic WEP", "static WEP", "TKIP", "AES" } },
  { 0x2A, 0x02, "text", "802.1x user" },
  { 0x2A, 0x03, "text", "802.1x password" },
  { 0x2A, 0x06, "text", "certificate organisation" },
  { 0x2A, 0x07, "text", "certificate unit" },
  { 0x2A, 0x08, "text", "certificate state" },
  { 0x2A, 0x09, "text", "certificate country" },
  { 0x2A, 0x0A, "text", "certificate common name" },
  { 0x2A, 0x0B, "text", "certificate city" },
  { 0x2A, 0x0C, "flag", "generate certificate" },
  { 0x2A, 0x0D, "number", "certificate generation status" },
  { 0x2A, 0x0E, "text", "certificate request" },
  { 0x2A, 0x0F, "text", "certificate" },
  { 0x2A, 0x10, "text", "CA certificate" },
  { 0x2A, 0x11, "flag", "CA certificate installed" },
  { 0x2A, 0x12, "flag", "make certificate request" },
  { 0x2A, 0x13, "flag", "802.1x authentication enabled" },
  { 0x2A, 0x14, "flag", "EAP-MD5 allowed" },
  { 0x2A, 0x15, "flag", "MSCHAPv2 allowed" },
  { 0x2A, 0x16, "flag", "LEAP allowed" },
  { 0x2A, 0x17, "flag", "PEAP allowed" },
  { 0x2A, 0x18, "flag", "EAP-TLS allowed" },
  { 0x2A, 0x19, "flag", "EAP-TTLS allowed" },
  { 0x2A, 0x1A, "number", "802.1x inner authentication", { "CHAP", "MSCHAP", "MSCHAPv2", "PAP" } },
  { 0x2A, 0x1B, "text", "802.1x common name" },
  { 0x2A, 0x1C, "text", "certificate alternative name" },
  { 0x2A, 0x1D, "number", "802.1x authentication status",
    { "802.1x not enabled", "NOT authenticated (deprecated)", "Authenticated", "Not Connected",
      "Server Cert Not Yet Valid", "Server Cert Expired", "Other Server Cert Verification Failure",
      "Client Cert Verification Failed", "EAP Type Mismatch", "Authentication Failed (general)",
      "Authentication in Progress", "CA Certificate Not Installed" } },
  { 0x2A, 0x24, "flag", "validate server certificate" },
  { 0x2A, 0x25, "text", "all security settings" },
  { 0x2A, 0x27, "text", "certificate friendly name" },
}

local known = {}
for _, row in ipairs(settings) do
  known[row[1] * 256 + row[2]] = { kind = row[3], name = row[4], meanings = row[5] or {} }
end

if ({ ... })[1] == "objects" then
  for _, row in ipairs(settings) do
    local meanings = {}
    for i, meaning in ipairs(row[5] or {}) do
      meanings[i] = (i - 1) .. "=" .. meaning
    end
    print(string.format("%02X\t%02X\t%s\t%s\t%s\t%s", row[1], row[2], row[3], groups[row[1]], row[4],
      table.concat(meanings, "; ")))
  end
end

local npa = Proto("npa", "NPA of a printer's wireless adapter")
local f = npa.fields
f.length = ProtoField.uint16("npa.length", "Length")
f.flags = ProtoField.uint8("npa.flags", "Flags", base.HEX)
f.ends = ProtoField.bool("npa.flags.ends", "Ends the exchange", 8, nil, 0x80)
f.more = ProtoField.bool("npa.flags.more", "More packets follow", 8, nil, 0x20)
f.command = ProtoField.uint8("npa.command", "Command", base.HEX)
f.kind = ProtoField.string("npa.kind", "Kind")
f.wrapped = ProtoField.uint16("npa.wrapped", "Wrapper around bytes")
f.group = ProtoField.uint8("npa.group", "Group", base.HEX, groups)
f.object = ProtoField.uint8("npa.object", "Object", base.HEX)
f.name = ProtoField.string("npa.name", "Setting")
f.size = ProtoField.uint16("npa.size", "Size of the value")
f.value = ProtoField.bytes("npa.value", "Value")
f.text = ProtoField.string("npa.text", "Text")
f.number = ProtoField.uint32("npa.number", "Number")
f.meaning = ProtoField.string("npa.meaning", "Meaning")
f.address = ProtoField.ipv4("npa.address", "Address")
f.ssid = ProtoField.string("npa.ssid", "SSID")
f.auth_status = ProtoField.uint8("npa.auth_status", "802.1x authentication status")
f.status = ProtoField.uint32("npa.status", "Status")
f.method = ProtoField.string("npa.method", "Method")
f.xml = ProtoField.string("npa.xml", "XML")
f.data = ProtoField.bytes("npa.data", "Data")
f.stray = ProtoField.bytes("npa.stray", "Bytes outside any packet")

local malformed = ProtoExpert.new("npa.malformed.expert", "Malformed packet", expert.group.MALFORMED,
  expert.severity.WARN)
local unknown = ProtoExpert.new("npa.unknown.expert", "Unknown packet", expert.group.UNDECODED,
  expert.severity.NOTE)
npa.experts = { malformed, unknown }

local START, COMMAND, REFUSED = 0xA5, 0xE0, 0xD4
local OBJECT_HEADER = 5
local GENERATE = "\xA5\x00\x06\x50\xE0\xDA\x01\x2A\x0C"
local SNIFF = "a5001080a45ba45b10efa45b11ee00ff13ec2e"

local function hex_of(range, size)
  return range:len() < size and "" or tostring(range(0, size):bytes()):lower()
end

-- Of the packet that begins at the offset (from 1), start byte and length field included; nothing when
-- its end is not there. One packet has four bytes more than it says.
local function packet_size(bytes, offset)
  if #bytes - offset < 2 then return nil end
  local high, low = bytes:byte(offset + 1, offset + 2)
  local size = 3 + high * 256 + low
  if bytes:sub(offset, offset + #GENERATE - 1) == GENERATE then
    size = size + 4
  end
  return offset + size - 1 <= #bytes and size or nil
end

local function flag(byte, bit)
  return math.floor(byte / bit) % 2 == 1
end

-- `range` is nil where there are no bytes left.
local function add_kind(tree, range, kind, infos)
  if range then
    tree:add(f.kind, range, kind)
  else
    tree:add(f.kind, kind)
  end
  infos[#infos + 1] = kind
end

local function add_malformed(tree, range, kind, infos)
  add_kind(tree, range, kind, infos)
  tree:add_proto_expert_info(malformed, kind)
end

-- Group, object and what is known of the setting.
local function add_setting(tree, range, infos)
  local group, object = range(0, 1):uint(), range(1, 1):uint()
  local info = known[group * 256 + object] or { kind = "none", name = "unknown setting", meanings = {} }
  local item = tree:add(range, string.format("%s (%02X %02X)", info.name, group, object))
  item:add(f.group, range(0, 1))
  item:add(f.object, range(1, 1))
  item:add(f.name, range(0, 2), info.name)
  infos[#infos + 1] = info.name
  return item, info
end

local function add_value(item, range, info)
  local size = range:len()
  if size == 0 then return end
  item:add(f.value, range)
  if info.kind == "text" then
    local text = range:string()
    local last = #text  -- a pattern would begin anew at each of many zeros
    while last > 0 and text:byte(last) == 0 do last = last - 1 end
    text = text:sub(1, last)
    item:add(f.text, range, text)
    item:append_text(": " .. text)
    if info.name == "SSID" then
      item:add(f.ssid, range, text)
    end
  elseif info.kind == "address" and size == 4 then
    item:add(f.address, range)
    item:append_text(": " .. tostring(range:ipv4()))
  elseif (info.kind == "number" or info.kind == "flag") and size <= 4 then
    local number = range:uint()
    item:add(f.number, range, number)
    item:append_text(": " .. number)
    local meaning = info.meanings[number + 1]
    if meaning then
      item:add(f.meaning, range, meaning)
      item:append_text(" (" .. meaning .. ")")
    end
    if info.name == "802.1x authentication status" and size == 1 then
      item:add(f.auth_status, range, number)
    end
  end
end

-- What follows "D8 00": a query, or the answer to one.
local function add_query(range, tree, infos)
  local size = range:len()
  if size < 2 or size == 3 then return add_malformed(tree, range, "query that is cut", infos) end
  add_kind(tree, range, size == 2 and "query" or "value", infos)
  local item, info = add_setting(tree, range, infos)
  if size == 2 then return end
  item:add(f.size, range(2, 2))
  if range(2, 2):uint() ~= size - 4 then
    item:add_proto_expert_info(malformed, "The value has another size")
  end
  if size > 4 then
    add_value(item, range(4), info)
  end
end

-- What follows "DA 01" and "D8 01": settings, or whether they were accepted.
local function add_settings(range, tree, infos)
  if range == nil then return add_kind(tree, nil, "store settings", infos) end
  if range:len() == 1 then
    add_kind(tree, range, range:uint() == 1 and "settings accepted" or "settings not accepted", infos)
    tree:add(f.status, range)
    return
  end
  add_kind(tree, range, "store settings", infos)
  local offset = 0
  while offset < range:len() do
    local left = range:len() - offset
    if left < OBJECT_HEADER then
      return tree:add(f.data, range(offset)):add_proto_expert_info(malformed, "Setting that is cut")
    end
    local size = range(offset + 3, 2):uint()
    left = left - OBJECT_HEADER
    local key = range(offset, 2):uint()
    -- Of these two the field holds but the low byte of the size.
    if size == 0 and left >= 256 and (key == 0x2A03 or key == 0x2A0A) then
      size = 256
    end
    if size > left then
      return tree:add(f.data, range(offset)):add_proto_expert_info(malformed, "Setting that is cut")
    end
    local item, info = add_setting(tree, range(offset, OBJECT_HEADER + size), infos)
    item:add(f.size, range(offset + 3, 2))
    if size > 0 then
      add_value(item, range(offset + OBJECT_HEADER, size), info)
    end
    offset = offset + OBJECT_HEADER + size
  end
end

local function add_xml(tree, range, xml, infos)
  local method = xml:match('<arg name="method">([^<]*)</arg>')
  local status = xml:match('<child name="status_code"><IntegerElem>(%d+)</IntegerElem>')
  if method then
    tree:add(f.method, range, method)
    infos[#infos + 1] = method
  end
  if status and #status < 10 then
    tree:add(f.status, range, tonumber(status))
    infos[#infos + 1] = "status " .. status
  end
  tree:add(f.xml, range, xml)
end

-- What follows "C0 03 00 01".
local function add_call(range, tree, infos, is_reply)
  if range == nil then return add_malformed(tree, nil, "method call without text", infos) end
  if not is_reply then
    add_kind(tree, range, "method call", infos)
    return add_xml(tree, range, range:raw(), infos)
  end
  add_kind(tree, range, "reply to a method call", infos)
  if range:len() > 2 and range(1, 1):uint() == COMMAND then
    add_xml(tree, range(2), range(2):raw(), infos)
  end
end

local add_packets

-- Command and data.
local function add_body(range, tree, infos, is_wrapped)
  tree:add(f.command, range(0, 1))
  local head = hex_of(range, 3)
  local rest = range:len() > 3 and range(3) or nil
  if head == "e0d800" and rest then
    return add_query(rest, tree, infos)
  elseif head == "e0da01" or head == "e0d801" then
    return add_settings(rest, tree, infos)
  elseif head == "e06302" and not is_wrapped and range:len() > 5 then
    tree:add(f.wrapped, range(3, 2))
    infos[#infos + 1] = "wrapped"
    if range(3, 2):uint() ~= range:len() - 5 then
      tree:add_proto_expert_info(malformed, "The wrapper has another size")
    end
    return add_packets(range(5), tree, infos)
  elseif hex_of(range, 5) == "e0c0030001" then
    local text = range:len() > 5 and range(5) or nil
    return add_call(text, tree, infos, text ~= nil and text(0, 1):uint() == 0)
  end
  add_kind(tree, range, "unknown packet", infos)
  if range:len() > 1 then
    tree:add(f.data, range(1))
  end
  tree:add_proto_expert_info(unknown)
end

-- One whole packet. `joined` is the text of a reply of which this is the last packet, or "" for a
-- packet in the middle of one.
local function add_packet(range, parent, infos, is_wrapped, joined)
  local tree = parent:add(npa, range)
  tree:add(f.length, range(1, 2))
  if range:len() < 4 then return add_malformed(tree, range, "packet without flags", infos) end
  local flags = range(3, 1):uint()
  local item = tree:add(f.flags, range(3, 1))
  item:add(f.ends, range(3, 1))
  item:add(f.more, range(3, 1))
  if hex_of(range, 19) == SNIFF then
    add_kind(tree, range, "announces a method call", infos)
  elseif flags == REFUSED then
    add_kind(tree, range, "refused", infos)
  elseif flag(flags, 0x80) then
    add_kind(tree, range, "ends the exchange", infos)
  elseif joined then
    add_kind(tree, range, joined == "" and "part of a reply" or "reply to a method call", infos)
    if joined ~= "" then
      add_xml(tree, range, joined, infos)
    end
  elseif range:len() > 4 then
    add_body(range(4), tree, infos, is_wrapped)
  else
    add_malformed(tree, range, "packet without a command", infos)
  end
end

-- Packets inside a wrapper.
function add_packets(range, tree, infos)
  local bytes, offset = range:raw(), 0
  while offset < #bytes do
    local size = bytes:byte(offset + 1) == START and packet_size(bytes, offset + 1)
    if not size then
      return tree:add(f.data, range(offset)):add_proto_expert_info(malformed, "Packet that is cut")
    end
    add_packet(range(offset, size), tree, infos, true)
    offset = offset + size
  end
end

-- What is known from one transfer to the next, by source and destination: the bytes of a packet that
-- goes on in the next transfer, and the text of a reply that goes on in the next packet.
local streams = {}
-- What was found in each frame when it was seen first: packets in order.
local frames = {}

function npa.init()
  streams, frames = {}, {}
end

local function stream_of(pinfo)
  local key = tostring(pinfo.src) .. ">" .. tostring(pinfo.dst)
  streams[key] = streams[key] or { waiting = "" }
  return streams[key]
end

-- Whether a packet of a reply belongs to a text over several packets, which is taken note of: nil,
-- "" or the whole text with its last packet.
local function join(stream, packet)
  local flags, body = packet:byte(4) or 0, packet:sub(6)
  local counts = not flag(flags, 0x80) and packet:byte(5) == COMMAND
  local more = flag(flags, 0x20)
  if counts and body:sub(1, 5) == "\xC0\x03\x00\x01\x00" then
    stream.parts = more and { (body:sub(6):gsub("^\xE0", "")) } or nil
    return more and "" or nil
  end
  if not stream.parts or not counts then
    stream.parts = nil
    return nil
  end
  stream.parts[#stream.parts + 1] = body
  if more then return "" end
  local text = table.concat(stream.parts)
  stream.parts = nil
  return text
end

-- Cuts what has come into packets.
local function cut(stream, data)
  local found = { before = #stream.waiting }
  local all = stream.waiting .. data
  local offset = 1
  while offset <= #all do
    local start = all:find("\xA5", offset, true) or #all + 1
    if start > offset then
      found[#found + 1] = { offset = offset, bytes = all:sub(offset, start - 1), stray = true }
      offset = start
    end
    local size = packet_size(all, offset)
    if not size then break end
    local packet = all:sub(offset, offset + size - 1)
    found[#found + 1] = { offset = offset, bytes = packet, joined = join(stream, packet) }
    offset = offset + size
  end
  stream.waiting = all:sub(offset)
  found.left = #stream.waiting
  return found
end

local function range_of(tvb, found, piece)
  local offset = piece.offset - 1 - found.before
  if offset >= 0 then return tvb(offset, #piece.bytes) end
  return ByteArray.new(piece.bytes, true):tvb("NPA packet of several transfers")()
end

function npa.dissector(tvb, pinfo, tree)
  if not pinfo.visited then
    frames[pinfo.number] = cut(stream_of(pinfo), tvb:raw())
  end
  local found = frames[pinfo.number]
  if not found then return 0 end
  pinfo.cols.protocol = "NPA"
  local infos = {}
  for _, piece in ipairs(found) do
    local range = range_of(tvb, found, piece)
    if piece.stray then
      tree:add(npa, range):add(f.stray, range)
    else
      add_packet(range, tree, infos, false, piece.joined)
    end
  end
  if found.left > 0 then
    local from = math.max(tvb:len() - found.left, 0)
    tree:add(npa, tvb(from)):append_text(", goes on in a later transfer")
    infos[#infos + 1] = "goes on"
  end
  pinfo.cols.info = table.concat(infos, ", ")
  return tvb:len()
end

-- A transfer that begins like a packet, or goes on with one.
local function is_npa(tvb, pinfo)
  local length = tvb:len()
  if length == 0 then return false end
  if pinfo.visited then return frames[pinfo.number] ~= nil end
  if stream_of(pinfo).waiting ~= "" then return true end
  if tvb(0, 1):uint() ~= START then return false end
  local flags = length > 3 and tvb(3, 1):uint() or 0x50
  return flags == 0x50 or flags == 0x70 or flag(flags, 0x80)
end

npa:register_heuristic("usb.bulk", function(tvb, pinfo, tree)
  if not is_npa(tvb, pinfo) then return false end
  npa.dissector(tvb, pinfo, tree)
  return true
end)
