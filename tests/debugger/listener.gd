extends RefCounted
## The editor's end of a debugging session, as far as a test needs it: waits on loopback for a game that was started with
## [code]--remote-debug[/code] at [method address], hears its messages and sends it some.
##
## Each packet is its length in four bytes, then a variant: an [Array] of the message's name, the game's thread, and the fields.

const PREFIX_SIZE: int = 4
## A game that says so has run into a script error and stands still.
const BROKE: String = "debug_enter"
const ERROR: String = "error"

## What the game has said, in order: [code][name, fields][/code].
var heard: Array[Array] = []
## The errors and warnings among it, which are never forgotten.
var errors: Array[Array] = []

var _server: TCPServer = TCPServer.new()
var _game: StreamPeerTCP
var _thread: int = 1
var _arrived: PackedByteArray = []


func listen() -> Error:
	return _server.listen(0, "127.0.0.1")


func address() -> String:
	return "tcp://127.0.0.1:%d" % _server.get_local_port()


func is_connected_to_game() -> bool:
	return _game != null and _game.get_status() == StreamPeerTCP.STATUS_CONNECTED


## Takes in what has arrived.
func poll() -> void:
	if _game == null and _server.is_connection_available():
		_game = _server.take_connection()
		_game.set_no_delay(true)
	if _game == null or _game.poll() != OK:
		return
	while is_connected_to_game() and _game.get_available_bytes() > 0:
		var read := _game.get_partial_data(_game.get_available_bytes())
		if read[0] != OK:
			return
		_arrived.append_array(read[1] as PackedByteArray)
	# Of a packet a part may have come so far, the length as well as what follows it.
	while _arrived.size() >= PREFIX_SIZE and _arrived.size() >= PREFIX_SIZE + _arrived.decode_u32(0):
		var end := PREFIX_SIZE + _arrived.decode_u32(0)
		var packet: Variant = bytes_to_var(_arrived.slice(PREFIX_SIZE, end))
		_arrived = _arrived.slice(end)
		if packet is Array:
			_thread = packet[1]
			heard.append([packet[0], packet[2]])
			if packet[0] == ERROR:
				errors.append(packet[2])


## In one piece, so that the game never finds the length alone.
func send(message: String, fields: Array) -> void:
	var bytes := var_to_bytes([message, _thread, fields])
	var packet := PackedByteArray()
	packet.resize(PREFIX_SIZE)
	packet.encode_u32(0, bytes.size())
	packet.append_array(bytes)
	_game.put_data(packet)


func stop() -> void:
	if _game != null:
		_game.disconnect_from_host()
	_server.stop()


## Takes the first message of that name whose first fields are these; empty when there is none yet. What came before it stays.
func take(message: String, first_fields: Array = []) -> Array:
	for i in heard.size():
		var fields: Array = heard[i][1]
		if heard[i][0] == message and fields.slice(0, first_fields.size()) == first_fields:
			heard.remove_at(i)
			return [message, fields]
	return []


func count(message: String, first_fields: Array = []) -> int:
	var found := 0
	for said in heard:
		var fields: Array = said[1]
		if said[0] == message and fields.slice(0, first_fields.size()) == first_fields:
			found += 1
	return found


func forget() -> void:
	heard.clear()
