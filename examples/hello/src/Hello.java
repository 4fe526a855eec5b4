import java.util.Map;
import java.util.TreeMap;

/**
 * A program to be launched: it shows what reached it and ends with the status it is told.
 *
 * <p>An argument "--exit=N" makes N the exit status.
 */
public final class Hello {
    private static final String EXIT_OPTION = "--exit=";
    private static final String OWN_PROPERTIES = "hello.";

    private Hello() {}

    public static void main(String[] arguments) {
        System.out.println("Hello from Java " + System.getProperty("java.version"));
        System.out.println("  home:       " + System.getProperty("java.home"));
        System.out.println("  JAVA_HOME:  " + System.getenv("JAVA_HOME"));
        System.out.println("  class path: " + System.getProperty("java.class.path"));
        for (Map.Entry<String, String> property : ownProperties().entrySet()) {
            System.out.println("  property:   " + property.getKey() + " = " + property.getValue());
        }
        int status = 0;
        for (String argument : arguments) {
            System.out.println("  argument:   [" + argument + "]");
            if (argument.startsWith(EXIT_OPTION)) {
                status = Integer.parseInt(argument.substring(EXIT_OPTION.length()));
            }
        }
        System.out.flush();
        System.exit(status);
    }

    /** The system properties that the launch command sets. */
    private static Map<String, String> ownProperties() {
        Map<String, String> own = new TreeMap<>();
        for (String name : System.getProperties().stringPropertyNames()) {
            if (name.startsWith(OWN_PROPERTIES)) {
                own.put(name, System.getProperty(name));
            }
        }
        return own;
    }
}
