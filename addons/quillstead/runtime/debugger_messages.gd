extends RefCounted
## The words that a running game and the editor's panel say to one another.
##
## Preload this script wherever a message is read or sent: a message's name and the order of its fields stand nowhere
## else in the editor's scripts. The library has the same words in [code]src/machine/debugger_messages.hpp[/code], and
## what is changed here is changed there.

## The prefix of everything that a game reports. A debugger plugin captures it.
const CAPTURE: String = "quillstead"

## Sent when a machine has entered a state. Fields: [enum StateField].
const STATE: String = "quillstead:state"
## Sent when a machine has stopped in a state that pauses. Fields: [enum PausedField].
const PAUSED: String = "quillstead:paused"
## Sent for every event that a machine takes. Fields: [enum EventField].
const EVENTS: String = "quillstead:events"
## Sent when variables of the watched machine have changed, or of any machine while none is watched.
## Fields: [enum ValuesField].
const VALUES: String = "quillstead:values"
## Sent five times a second by the watched machine. Fields: [enum ActionsField].
const ACTIONS: String = "quillstead:actions"

## Asks for reports on the first machine whose path contains a text; an empty text ends the watch.
## Fields: [enum WatchField].
const WATCH: String = "quillstead_control:watch"
## Pauses a machine or lets it go on. Fields: [enum PauseField].
const PAUSE: String = "quillstead_control:pause"
## Runs one tick of a machine, which stays paused. Fields: [enum StepField].
const STEP: String = "quillstead_control:step"

## An action that is switched off in the design.
const STATUS_OFF: String = "off"
## An action that has not begun yet.
const STATUS_WAITING: String = "waiting"
## An action at work.
const STATUS_RUNNING: String = "running"
## An action that has finished.
const STATUS_DONE: String = "done"

## Fields of [constant STATE]: the machine's path, the new state's name, the previous state's name or an empty text.
enum StateField { MACHINE, STATE, PREVIOUS }

## Fields of [constant PAUSED]: the machine's path, the state's name.
enum PausedField { MACHINE, STATE }

## Fields of [constant EVENTS]: the machine's path, the event's name, its data as text (empty when it has none), and
## whether the event is global.
enum EventField { MACHINE, EVENT, DATA, IS_GLOBAL }

## Fields of [constant VALUES]: the machine's path, and a [Dictionary] of variable name to value, both as text.
enum ValuesField { MACHINE, VALUES }

## Fields of [constant ACTIONS]: the machine's path, and an [Array] of rows, each with the fields of [enum ActionField].
enum ActionsField { MACHINE, ROWS }

## Fields of one row of [constant ACTIONS]: the state's name, the action's place in that state, one of the
## [code]STATUS_[/code] words, and what the action says about itself.
enum ActionField { STATE, INDEX, STATUS, WORDS }

## Fields of [constant WATCH]: a part of the machine's path.
enum WatchField { PATH_PART }

## Fields of [constant PAUSE]: the machine's path, and whether to pause; without the second it pauses.
enum PauseField { MACHINE, ON }

## Fields of [constant STEP]: the machine's path.
enum StepField { MACHINE }
