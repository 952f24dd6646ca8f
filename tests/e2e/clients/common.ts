// What every client program does and prints, whichever generator wrote the
// client it drives:
//   node PROGRAM.js BASE_URL SESSION READ_ONLY_SESSION
// It reads a port's link state, turns the port on, reads a port that does
// not exist, reads every port's status, polls with the read-only session (sending "Refresh") and tries
// a write with it, then prints what it got as one JSON object.
export interface Outcome {
  linkState: string;  // the read, narrowed to its success
  wrote: string;      // the write's respMsg, narrowed to code 0
  missing: number;    // the failed read's code, narrowed to its failure
  ports: number[];    // every port's number from the status summary, narrowed to its list
  polled: string;     // the poll's link state
  refused: number;    // the HTTP status of the read-only write
}

export type Program = (baseUrl: string, session: string, readOnly: string) => Promise<Outcome>;

export function run(program: Program): void {
  const [baseUrl, session, readOnly] = process.argv.slice(2);
  program(baseUrl, session, readOnly).then(
    (outcome) => console.log(JSON.stringify(outcome)),
    (e: unknown) => {
      console.error(e);
      process.exit(1);
    },
  );
}

// The codes a failure can carry.
export type FailureCode = 10000 | 10003 | 10011 | 10023 | 17002;

// Compiles only where T is U exactly: not any, not number, not a wider union.
export type Exactly<T, U> = 0 extends 1 & T ? false : [T] extends [U] ? ([U] extends [T] ? true : false) : false;
export function typed<Check extends true>(): Check | undefined {
  return undefined;
}

// A reply the generated types say is there.
export function present<T>(value: T | undefined | null, what: string): T {
  if (value === undefined || value === null) throw new Error(`${what}: no reply body`);
  return value;
}

// The port the simulated switch does not have.
export const NO_PORT = 999;
